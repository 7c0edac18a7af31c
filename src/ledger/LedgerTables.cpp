#include "LedgerTables.h"

namespace ledger::tables {

namespace {

const QString kBalanceKey = QStringLiteral("OSTATOK");

} // namespace

store::Amount storedBalance(store::Transaction& tx)
{
    return tx.lookupAmount(QStringLiteral("Tech"), QStringLiteral("F2"), QStringLiteral("F0 = ?"),
                           {kBalanceKey});
}

void writeStoredBalance(store::Transaction& tx, store::Amount balance)
{
    tx.execute(QStringLiteral("UPDATE Tech SET F2 = ? WHERE F0 = ?"), {balance, kBalanceKey});
}

store::Amount purseBalance(store::Transaction& tx, int code)
{
    return tx.lookupAmount(QStringLiteral("Purse"), QStringLiteral("F1"), QStringLiteral("F0 = ?"), {code});
}

store::Amount purseTotal(store::Transaction& tx)
{
    const store::Rows rows = tx.query(QStringLiteral("SELECT SUM(F1) FROM Purse"));
    return rows.empty() ? store::Amount() : rows.front().amount(0);
}

void writePurseBalance(store::Transaction& tx, int code, store::Amount balance)
{
    tx.execute(QStringLiteral("DELETE FROM Purse WHERE F0 = ?"), {code});
    tx.execute(QStringLiteral("INSERT INTO Purse (F0, F1) VALUES (?, ?)"), {code, balance});
}

QString fitText(const QString& text)
{
    if (text.size() <= kTextLength)
        return text;
    const bool splitsPair = text.at(kTextLength - 1).isHighSurrogate();
    return text.left(splitsPair ? kTextLength - 1 : kTextLength);
}

Outcome finish(store::Transaction& tx)
{
    return tx.commit() ? Outcome::Done : Outcome::NotSaved;
}

} // namespace ledger::tables
