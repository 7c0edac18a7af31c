#include "OperationDeletion.h"

#include "ServiceTexts.h"

#include "ledger/LedgerTables.h"
#include "store/Transaction.h"

#include <limits>

namespace service {

namespace {

QStringList numbersOf(const store::Rows& rows)
{
    QStringList numbers;
    for (const store::Row& row : rows)
        numbers.append(row.value(0).toString());
    return numbers;
}

// The month of an operation's date, for the figures to check; none for an undated one.
std::vector<QDate> monthOf(const store::Row& row, int dateColumn)
{
    const QDate day = row.date(dateColumn);
    return day.isValid() ? std::vector{day} : std::vector<QDate>{};
}

} // namespace

std::optional<OperationDeletion::Day> OperationDeletion::list(QDate day)
{
    store::Transaction tx(m_store);
    Day found;
    found.bank =
        numbersOf(tx.query(QStringLiteral("SELECT F0 FROM Bank WHERE F1 = ? ORDER BY F0 DESC"), {day}));
    found.expenses =
        numbersOf(tx.query(QStringLiteral("SELECT F0 FROM Bills WHERE F1 = ? ORDER BY F0 DESC"), {day}));
    if (!tx.commit())
        return std::nullopt;
    return found;
}

store::Result<OperationDeletion::Operation> OperationDeletion::find(const QString& sql, const QString& typed)
{
    const store::Outcome noSuchOperation = store::Outcome::refused(QString::fromUtf8(texts::selectOperation));
    const std::optional<qlonglong> number = numberOf(typed);
    if (!number)
        return noSuchOperation;
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(sql, {*number});
    if (!tx.commit())
        return store::Outcome::notSaved();
    if (rows.empty())
        return noSuchOperation;
    return Operation{*number, rows.front().amount(0), rows.front().text(1)};
}

store::Result<OperationDeletion::Operation> OperationDeletion::findBankOperation(const QString& typed)
{
    return find(QStringLiteral("SELECT F2, F3 FROM Bank WHERE F0 = ?"), typed);
}

store::Result<OperationDeletion::Operation> OperationDeletion::findExpense(const QString& typed)
{
    return find(QStringLiteral("SELECT F3, F4 FROM Bills WHERE F0 = ?"), typed);
}

store::Outcome OperationDeletion::deleteBankOperation(qlonglong number)
{
    namespace tables = ledger::tables;
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F2, F1 FROM Bank WHERE F0 = ?"), {number});
    if (rows.empty())
        return store::Outcome::committed(tx.commit());
    const auto before = ledger::MoneyFigures::read(tx, monthOf(rows.front(), 1));
    const auto balance = (store::WideAmount(tables::storedBalance(tx)) - rows.front().amount(0)).toAmount();
    if (!balance)
        return tables::outOfRange();
    tables::writeStoredBalance(tx, *balance);
    tx.execute(QStringLiteral("DELETE FROM Bank WHERE F0 = ?"), {number});
    return tables::finishInRange(tx, before);
}

store::Outcome OperationDeletion::deleteExpense(qlonglong number)
{
    namespace tables = ledger::tables;
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F3, F6, F1 FROM Bills WHERE F0 = ?"), {number});
    if (rows.empty())
        return store::Outcome::committed(tx.commit());
    const auto before = ledger::MoneyFigures::read(tx, monthOf(rows.front(), 2));
    const store::Amount amount = rows.front().amount(0);
    const QVariant purse = rows.front().value(1);
    const store::Amount inPurse =
        tx.lookupAmount(QStringLiteral("Purse"), QStringLiteral("F1"), QStringLiteral("F0 = ?"), {purse});
    const auto balance = (store::WideAmount(tables::storedBalance(tx)) + amount).toAmount();
    const auto purseBalance = (store::WideAmount(inPurse) + amount).toAmount();
    if (!balance || !purseBalance)
        return tables::outOfRange();
    tables::writeStoredBalance(tx, *balance);
    tx.execute(QStringLiteral("DELETE FROM Bills WHERE F0 = ?"), {number});
    // A purse deleted since keeps no row: nothing to give back to.
    tx.execute(QStringLiteral("UPDATE Purse SET F1 = ? WHERE F0 = ?"), {*purseBalance, purse});
    return tables::finishInRange(tx, before);
}

std::optional<qlonglong> OperationDeletion::numberOf(const QString& text)
{
    const QString digits = text.trimmed();
    if (digits.isEmpty() || digits.size() > 10)
        return std::nullopt;
    for (const QChar ch : digits)
        if (ch < QLatin1Char('0') || ch > QLatin1Char('9'))
            return std::nullopt;
    const qlonglong number = digits.toLongLong();
    if (number <= 0 || number > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return number;
}

} // namespace service
