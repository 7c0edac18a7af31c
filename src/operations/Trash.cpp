#include "Trash.h"

#include "Deletion.h"
#include "OperationsTexts.h"

#include "service/OperationDeletion.h"
#include "store/Copies.h"
#include "store/Dates.h"
#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <algorithm>

namespace operations {

namespace money = store::money;

namespace {

const QString kBankTable = QStringLiteral("Bank");
const QString kExpenseTable = QStringLiteral("Bills");

QString tableOf(Operation::Kind kind)
{
    return kind == Operation::Kind::Expense ? kExpenseTable : kBankTable;
}

QDateTime cutoff(const QDateTime& now)
{
    return now.addDays(-Trash::kTrashDays);
}

QDateTime putAtOf(const QString& stored)
{
    const QDateTime at = QDateTime::fromString(stored, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return at.isValid() ? at : QDateTime(store::dateFromStored(stored), QTime());
}

// An entry's row, as list() selects it from column 5 on.
Operation operationOf(const store::RowView& row, const QString& table)
{
    const store::Amount amount = row.amount(7);
    return {table == kExpenseTable ? Operation::Kind::Expense : bankKind(amount),
            static_cast<std::int32_t>(row.integer(5)),
            row.date(6),
            amount,
            static_cast<std::int32_t>(row.integer(8)),
            static_cast<std::int32_t>(row.integer(11)),
            row.text(9),
            row.text(10)};
}

// What putting an entry back needs to know of it.
struct Return
{
    std::int32_t entry = 0;
    Operation::Kind kind = Operation::Kind::Deposit;
    std::int32_t number = 0;
    QDate date;
    store::Amount amount;
    std::optional<int> purse;
};

bool inList(store::Transaction& tx, Operation::Kind kind, std::int32_t number)
{
    return !tx.query(QStringLiteral("SELECT 1 FROM %1 WHERE F0 = ?").arg(tableOf(kind)), {number}).empty();
}

// The row goes back under its number and its money comes back as it was
// when it was made: the stored balance, and the purse an expense was paid
// from if it still exists. False when a figure would leave the range.
bool putRowBack(store::Transaction& tx, const Return& back)
{
    const bool expense = back.kind == Operation::Kind::Expense;
    tx.execute(expense
                   ? QStringLiteral("INSERT INTO Bills (F0, F1, F2, F3, F4, F5, F6) "
                                    "SELECT F5, F6, F8, F7, F9, F10, F11 FROM Trash WHERE F0 = ?")
                   : QStringLiteral(
                         "INSERT INTO Bank (F0, F1, F2, F3) SELECT F5, F6, F7, F9 FROM Trash WHERE F0 = ?"),
               {back.entry});
    const store::WideAmount change = expense ? -store::WideAmount(back.amount) : back.amount;
    const auto balance = (store::WideAmount(money::storedBalance(tx)) + change).toAmount();
    if (!balance)
        return false;
    money::writeStoredBalance(tx, *balance);
    if (expense && back.purse && money::purseExists(tx, *back.purse)) {
        const auto purse =
            (store::WideAmount(money::purseBalance(tx, *back.purse).value_or(store::Amount())) + change)
                .toAmount();
        if (!purse)
            return false;
        money::writePurseBalance(tx, *back.purse, *purse);
    }
    tx.execute(QStringLiteral("DELETE FROM Trash WHERE F0 = ?"), {back.entry});
    return true;
}

} // namespace

QString reasonText(TrashReason reason)
{
    switch (reason) {
    case TrashReason::Deleted:
        return QString::fromUtf8(texts::reasonDeleted);
    case TrashReason::Corrected:
        return QString::fromUtf8(texts::reasonCorrected);
    case TrashReason::Replaced:
        return QString::fromUtf8(texts::reasonReplaced);
    }
    return {};
}

std::optional<std::vector<TrashEntry>> Trash::list()
{
    std::vector<TrashEntry> entries;
    store::Transaction tx(m_store);
    tx.forEachRow(QStringLiteral("SELECT F0, F1, F2, F4, F3, F5, F6, F7, F8, F9, F10, F11 FROM Trash "
                                 "WHERE F1 >= ? ORDER BY F0 DESC"),
                  {cutoff(QDateTime::currentDateTime())}, [&entries](const store::RowView& row) {
                      entries.push_back({static_cast<std::int32_t>(row.integer(0)), putAtOf(row.text(1)),
                                         static_cast<std::int32_t>(row.integer(2)), row.text(3),
                                         operationOf(row, row.text(4))});
                  });
    if (!tx.commit())
        return std::nullopt;
    return entries;
}

store::Outcome Trash::putBack(std::vector<std::int32_t> entries)
{
    std::ranges::sort(entries);
    store::Transaction tx(m_store);
    std::vector<Return> returns;
    std::vector<QDate> months;
    for (const std::int32_t entry : entries) {
        const store::Rows rows =
            tx.query(QStringLiteral("SELECT F3, F5, F6, F7, F11 FROM Trash WHERE F0 = ?"), {entry});
        if (rows.empty())
            continue; // put back or thrown away meanwhile
        const store::Row& row = rows.front();
        const store::Amount amount = row.amount(3);
        returns.push_back(
            {entry, row.text(0) == kExpenseTable ? Operation::Kind::Expense : bankKind(amount),
             static_cast<std::int32_t>(row.integer(1)), row.date(2), amount,
             row.value(4).isValid() ? std::optional(static_cast<int>(row.integer(4))) : std::nullopt});
        if (returns.back().date.isValid())
            months.push_back(returns.back().date);
    }
    if (returns.empty())
        return store::Outcome::committed(tx.commit());
    const auto before = store::MoneyFigures::read(tx, months);
    if (!store::Copies(m_store).before(store::CopyReason::TrashReturn))
        return store::Outcome::notSaved();
    TrashAction replaced(tx, TrashReason::Replaced);
    service::OperationDeletion deletion(m_store);
    for (const Return& back : returns) {
        if (inList(tx, back.kind, back.number)) {
            replaced.keep(back.kind, back.number);
            const store::Outcome removed = deleteOne(deletion, back.kind, back.number);
            if (!removed)
                return removed;
        }
        if (!putRowBack(tx, back))
            return store::MoneyFigures::outOfRange();
    }
    replaced.finish();
    return store::MoneyFigures::commitInRange(tx, before);
}

store::Outcome Trash::undo(std::int32_t action, std::uint64_t reading)
{
    store::Transaction tx(m_store);
    if (m_store.readings() != reading)
        return tx.commit() ? store::Outcome::refused(QString::fromUtf8(texts::fileReplacedSince))
                           : store::Outcome::notSaved();
    std::vector<std::int32_t> entries;
    for (const store::Row& row : tx.query(QStringLiteral("SELECT F0 FROM Trash WHERE F2 = ?"), {action}))
        entries.push_back(static_cast<std::int32_t>(row.integer(0)));
    if (entries.empty()) {
        const bool read = static_cast<bool>(tx.commit());
        return read ? store::Outcome::refused(QString::fromUtf8(texts::nothingToUndo))
                    : store::Outcome::notSaved();
    }
    if (store::Outcome done = putBack(std::move(entries)); !done)
        return done;
    return store::Outcome::committed(tx.commit());
}

TrashAction::TrashAction(store::Transaction& tx, TrashReason reason)
    : m_tx(tx), m_reason(reason), m_now(QDateTime::currentDateTime())
{}

void TrashAction::keep(Operation::Kind kind, std::int32_t number)
{
    m_tx.execute(
        kind == Operation::Kind::Expense
            ? QStringLiteral("INSERT INTO Trash (F1, F3, F4, F5, F6, F7, F8, F9, F10, F11) "
                             "SELECT ?, 'Bills', ?, F0, F1, F3, F2, F4, F5, F6 FROM Bills WHERE F0 = ?")
            : QStringLiteral("INSERT INTO Trash (F1, F3, F4, F5, F6, F7, F9) "
                             "SELECT ?, 'Bank', ?, F0, F1, F2, F3 FROM Bank WHERE F0 = ?"),
        {m_now, reasonText(m_reason), number});
}

std::int32_t TrashAction::finish()
{
    const store::Rows first = m_tx.query(QStringLiteral("SELECT MIN(F0) FROM Trash WHERE F2 IS NULL"));
    const auto action = first.empty() ? 0 : static_cast<std::int32_t>(first.front().integer(0));
    if (action)
        m_tx.execute(QStringLiteral("UPDATE Trash SET F2 = ? WHERE F2 IS NULL"), {action});
    m_tx.execute(QStringLiteral("DELETE FROM Trash WHERE F1 < ?"), {cutoff(m_now)});
    return action;
}

} // namespace operations
