#include "MoneyRows.h"

#include "Transaction.h"

namespace store::money {

namespace {

const QString kBalanceKey = QStringLiteral("OSTATOK");

} // namespace

Amount storedBalance(QuerySource& source)
{
    const Rows rows = source.query(QStringLiteral("SELECT F2 FROM Tech WHERE F0 = ?"), {kBalanceKey});
    return rows.empty() ? Amount() : rows.back().amount(0);
}

void writeStoredBalance(Transaction& tx, Amount balance)
{
    tx.execute(QStringLiteral("UPDATE Tech SET F2 = ? WHERE F0 = ?"), {balance, kBalanceKey});
}

std::optional<Amount> purseBalance(QuerySource& source, int code)
{
    const Rows rows = source.query(QStringLiteral("SELECT F1 FROM Purse WHERE F0 = ?"), {code});
    return rows.empty() ? std::nullopt : std::optional(rows.back().amount(0));
}

WideAmount purseTotal(QuerySource& source)
{
    const Rows rows = source.query(QStringLiteral("SELECT WideSum(F1) FROM Purse"));
    return rows.empty() ? WideAmount() : rows.front().wide(0);
}

void writePurseBalance(Transaction& tx, int code, Amount balance)
{
    removePurseBalance(tx, code);
    tx.execute(QStringLiteral("INSERT INTO Purse (F0, F1) VALUES (?, ?)"), {code, balance});
}

void removePurseBalance(Transaction& tx, int code)
{
    tx.execute(QStringLiteral("DELETE FROM Purse WHERE F0 = ?"), {code});
}

bool purseExists(QuerySource& source, int code)
{
    const Rows rows = source.query(QStringLiteral("SELECT EXISTS (SELECT 1 FROM Purse_Dict WHERE F0 = ? "
                                                  "UNION ALL SELECT 1 FROM Purse WHERE F0 = ?)"),
                                   {code, code});
    return !rows.empty() && rows.front().integer(0) != 0;
}

} // namespace store::money
