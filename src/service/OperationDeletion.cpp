#include "OperationDeletion.h"

#include "ServiceTexts.h"

#include "store/Copies.h"
#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/Transaction.h"

#include <limits>

namespace service {

namespace money = store::money;

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

// An operation number typed or chosen: a positive whole number of the number
// columns' range.
std::optional<qlonglong> numberOf(const QString& text)
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
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F2, F1 FROM Bank WHERE F0 = ?"), {number});
    if (rows.empty())
        return store::Outcome::committed(tx.commit());
    const auto before = store::MoneyFigures::read(tx, monthOf(rows.front(), 1));
    const auto balance = (store::WideAmount(money::storedBalance(tx)) - rows.front().amount(0)).toAmount();
    if (!balance)
        return store::MoneyFigures::outOfRange();
    if (!store::Copies(m_store).before(store::CopyReason::OperationDeletion))
        return store::Outcome::notSaved();
    money::writeStoredBalance(tx, *balance);
    tx.execute(QStringLiteral("DELETE FROM Bank WHERE F0 = ?"), {number});
    return store::MoneyFigures::commitInRange(tx, before);
}

store::Outcome OperationDeletion::deleteExpense(qlonglong number)
{
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F3, F6, F1 FROM Bills WHERE F0 = ?"), {number});
    if (rows.empty())
        return store::Outcome::committed(tx.commit());
    const auto before = store::MoneyFigures::read(tx, monthOf(rows.front(), 2));
    const store::Amount amount = rows.front().amount(0);
    // A purse deleted since has nothing to give back to.
    const int purse = static_cast<int>(rows.front().integer(1));
    const bool purseKept = rows.front().value(1).isValid() && money::purseExists(tx, purse);
    const auto balance = (store::WideAmount(money::storedBalance(tx)) + amount).toAmount();
    const auto purseBalance =
        (store::WideAmount(money::purseBalance(tx, purse).value_or(store::Amount())) + amount).toAmount();
    if (!balance || (purseKept && !purseBalance))
        return store::MoneyFigures::outOfRange();
    if (!store::Copies(m_store).before(store::CopyReason::OperationDeletion))
        return store::Outcome::notSaved();
    money::writeStoredBalance(tx, *balance);
    tx.execute(QStringLiteral("DELETE FROM Bills WHERE F0 = ?"), {number});
    if (purseKept)
        money::writePurseBalance(tx, purse, *purseBalance);
    return store::MoneyFigures::commitInRange(tx, before);
}

} // namespace service
