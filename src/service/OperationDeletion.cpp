#include "OperationDeletion.h"

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

void addToBalance(store::Transaction& tx, store::Amount change)
{
    const store::Amount balance =
        tx.lookupAmount(QStringLiteral("Tech"), QStringLiteral("F2"), QStringLiteral("F0 = 'OSTATOK'"));
    tx.execute(QStringLiteral("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'"),
               {(balance + change).roundedToCents()});
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

OperationDeletion::Found OperationDeletion::find(const QString& sql, qlonglong number)
{
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(sql, {number});
    Found found;
    found.readable = tx.commit().ok();
    if (found.readable && !rows.empty())
        found.operation = Operation{number, rows.front().amount(0), rows.front().text(1)};
    return found;
}

OperationDeletion::Found OperationDeletion::findBankOperation(qlonglong number)
{
    return find(QStringLiteral("SELECT F2, F3 FROM Bank WHERE F0 = ?"), number);
}

OperationDeletion::Found OperationDeletion::findExpense(qlonglong number)
{
    return find(QStringLiteral("SELECT F3, F4 FROM Bills WHERE F0 = ?"), number);
}

store::StoreResult OperationDeletion::deleteBankOperation(qlonglong number)
{
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F2 FROM Bank WHERE F0 = ?"), {number});
    if (!rows.empty()) {
        addToBalance(tx, -rows.front().amount(0));
        tx.execute(QStringLiteral("DELETE FROM Bank WHERE F0 = ?"), {number});
    }
    return tx.commit();
}

store::StoreResult OperationDeletion::deleteExpense(qlonglong number)
{
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F3, F6 FROM Bills WHERE F0 = ?"), {number});
    if (!rows.empty()) {
        const store::Amount amount = rows.front().amount(0);
        const QVariant purse = rows.front().value(1);
        addToBalance(tx, amount);
        tx.execute(QStringLiteral("DELETE FROM Bills WHERE F0 = ?"), {number});
        const store::Amount inPurse =
            tx.lookupAmount(QStringLiteral("Purse"), QStringLiteral("F1"), QStringLiteral("F0 = ?"), {purse});
        tx.execute(QStringLiteral("UPDATE Purse SET F1 = ? WHERE F0 = ?"),
                   {(inPurse + amount).roundedToCents(), purse});
    }
    return tx.commit();
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
