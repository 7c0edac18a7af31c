#include "LedgerTables.h"

#include "store/StoreTexts.h"

namespace ledger::tables {

namespace {

const QString kBalanceKey = QStringLiteral("OSTATOK");

} // namespace

store::Amount storedBalance(store::QuerySource& source)
{
    // As a lookup: the last matching row counts.
    const store::Rows rows = source.query(QStringLiteral("SELECT F2 FROM Tech WHERE F0 = ?"), {kBalanceKey});
    return rows.empty() ? store::Amount() : rows.back().amount(0);
}

void writeStoredBalance(store::Transaction& tx, store::Amount balance)
{
    tx.execute(QStringLiteral("UPDATE Tech SET F2 = ? WHERE F0 = ?"), {balance, kBalanceKey});
}

store::Amount purseBalance(store::Transaction& tx, int code)
{
    return tx.lookupAmount(QStringLiteral("Purse"), QStringLiteral("F1"), QStringLiteral("F0 = ?"), {code});
}

store::WideAmount purseTotal(store::QuerySource& source)
{
    const store::Rows rows = source.query(QStringLiteral("SELECT WideSum(F1) FROM Purse"));
    return rows.empty() ? store::WideAmount() : rows.front().wide(0);
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

store::Outcome outOfRange()
{
    return store::Outcome::refused(QString::fromUtf8(store::texts::amountOutOfRange));
}

store::Outcome finishInRange(store::Transaction& tx, const MoneyFigures& before,
                             const std::function<void()>& beforeSave)
{
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const MoneyFigures after = MoneyFigures::read(tx, before.monthDays);
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    if (!after.keepsInRange(before))
        return outOfRange();
    if (beforeSave)
        beforeSave();
    return store::Outcome::committed(tx.commit());
}

} // namespace ledger::tables
