#pragma once

#include "Journal.h"

#include "store/Outcome.h"

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace store {
class Store;
class Transaction;
} // namespace store

namespace operations {

// Why an operation went to the trash.
enum class TrashReason : std::uint8_t
{
    Deleted,
    Corrected,
    Replaced, // by an older version of it put back from the trash
};

// One operation in the trash, as it was when it left the list.
struct TrashEntry
{
    std::int32_t number = 0; // the entry's own number
    QDateTime putAt;
    std::int32_t action = 0; // the entries put in together share it
    QString reason;
    Operation operation;
};

// The trash ("Корзина") of the operations window. Deleting or correcting an
// operation keeps its row here for kTrashDays days; putting it back restores
// the row under its old number and redoes its effect on the money, exactly
// undoing the deletion. A version of the operation still in the list (a
// correction made since) goes to the trash in its place, so nothing is lost.
class Trash
{
public:
    static constexpr int kTrashDays = 90;

    explicit Trash(store::Store& store) : m_store(store) {}

    // The entries of the last kTrashDays days, newest first; nullopt when the
    // data file cannot be read (the store has said why).
    std::optional<std::vector<TrashEntry>> list();
    // Puts the entries with these numbers back, in the order they were put
    // in, in one transaction with one automatic copy; refused, with nothing
    // written, when a figure would leave the money columns' range.
    store::Outcome putBack(std::vector<std::int32_t> entries);
    // Puts back what one deletion or correction put in the trash, made when
    // the store's readings() were `reading`; refused when the data file was
    // replaced since (its trash is another's).
    store::Outcome undo(std::int32_t action, std::uint64_t reading);

private:
    store::Store& m_store;
};

// The entries one deletion or correction puts in the trash, inside its
// transaction: keep() copies an operation's row before it is deleted.
class TrashAction
{
public:
    TrashAction(store::Transaction& tx, TrashReason reason);

    void keep(Operation::Kind kind, std::int32_t number);
    // Names the action by its first entry and removes entries older than
    // kTrashDays days; the action's number, 0 when nothing was kept.
    std::int32_t finish();

private:
    store::Transaction& m_tx;
    TrashReason m_reason;
    QDateTime m_now;
};

QString reasonText(TrashReason reason);

} // namespace operations
