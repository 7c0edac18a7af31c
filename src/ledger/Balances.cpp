#include "Balances.h"

#include "store/Transaction.h"

namespace ledger {

namespace {

QStringList catalogueEntries(store::Transaction& tx, const QString& table)
{
    QStringList entries;
    for (const store::Row& row : tx.query(QStringLiteral("SELECT F0, F1 FROM %1 ORDER BY F0").arg(table)))
        entries.append(listEntry(row.value(0), row.value(1)));
    return entries;
}

} // namespace

QString listEntry(const QVariant& code, const QVariant& name)
{
    return code.toString() + QStringLiteral(" - ") + name.toString();
}

std::optional<Balances> Balances::read(store::Store& store)
{
    store::Transaction tx(store);
    Balances balances;
    balances.accountEntries = catalogueEntries(tx, QStringLiteral("Bills_Dict"));
    balances.purseEntries = catalogueEntries(tx, QStringLiteral("Purse_Dict"));
    const store::Rows sum = tx.query(QStringLiteral("SELECT SUM(F1) FROM Purse"));
    if (!sum.empty())
        balances.purseTotal = sum.front().amount(0);
    const store::Amount stored = tx.lookupAmount(QStringLiteral("Tech"), QStringLiteral("F2"),
                                                 QStringLiteral("F0 = ?"), {QStringLiteral("OSTATOK")});
    if (!tx.commit())
        return std::nullopt;
    balances.bankAmount = stored - balances.purseTotal;
    return balances;
}

} // namespace ledger
