#pragma once

#include "store/Amount.h"
#include "store/WideAmount.h"

#include <QDate>
#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace store {
class Store;
}

namespace operations {

// One bank operation or expense as the list of all operations shows it.
struct Operation
{
    enum class Kind : std::uint8_t
    {
        Deposit,
        Withdrawal,
        Expense,
    };

    Kind kind = Kind::Deposit;
    std::int32_t number = 0; // Bank.F0 or Bills.F0
    QDate date;
    store::Amount amount;     // as stored: signed for the bank, positive for an expense
    std::int32_t account = 0; // expenses only
    std::int32_t purse = 0;   // expenses only
    QString name;             // the bank operation's comment, the expense's name
    QString note;             // expenses only

    // The change of the household's money: a deposit positive, a withdrawal
    // and an expense negative.
    store::WideAmount change() const { return kind == Kind::Expense ? -store::WideAmount(amount) : amount; }

    bool operator==(const Operation&) const = default;
};

// Every operation of the data file, newest first (by date, then number), with
// the names of the accounts and purses they refer to.
class Journal
{
public:
    Journal() = default;
    // A journal of operations already in the order the list shows them.
    explicit Journal(std::vector<Operation> inOrder);

    std::size_t size() const { return m_order.size(); }
    // The operation at this place of the list, newest first.
    const Operation& at(std::size_t place) const { return m_operations[m_order[place]]; }

    QHash<std::int32_t, QString> accounts;
    QHash<std::int32_t, QString> purses;

    QString accountName(const Operation& operation) const;
    QString purseName(const Operation& operation) const;

    // The store's generation when the journal was read.
    std::uint64_t generation = 0;

    // Reads the data file in one transaction; nullopt when it cannot be read
    // (the store has said why).
    static std::optional<Journal> read(store::Store& store);
    // Whether the data file may hold other operations than when `generation`
    // was read; checks the file on disk.
    static bool changedSince(store::Store& store, std::uint64_t generation);

private:
    // Kept as the file gives them; the list's order is a list of places, so a
    // million operations are not moved to sort them.
    std::vector<Operation> m_operations;
    std::vector<std::uint32_t> m_order;
};

QString kindText(Operation::Kind kind);
// A bank operation's kind by the sign of its stored amount.
Operation::Kind bankKind(store::Amount amount);

// A catalogue's entries as lists show them ("3 - Питание"), with their codes, in code order.
std::vector<std::pair<std::int32_t, QString>> catalogueEntries(const QHash<std::int32_t, QString>& names);

} // namespace operations
