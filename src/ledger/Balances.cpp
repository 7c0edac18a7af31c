#include "Balances.h"

#include "store/CatalogueEntry.h"
#include "store/MoneyFigures.h"
#include "store/Transaction.h"

namespace ledger {

namespace {

QStringList catalogueEntries(store::QuerySource& source, const QString& table)
{
    QStringList entries;
    for (const store::Row& row : source.query(QStringLiteral("SELECT F0, F1 FROM %1 ORDER BY F0").arg(table)))
        entries.append(store::CatalogueEntry::format(row.value(0), row.value(1)));
    return entries;
}

} // namespace

Balances Balances::of(store::QuerySource& source)
{
    Balances balances;
    balances.accountEntries = catalogueEntries(source, QStringLiteral("Bills_Dict"));
    balances.purseEntries = catalogueEntries(source, QStringLiteral("Purse_Dict"));
    const auto figures = store::MoneyFigures::read(source);
    balances.purseTotal = figures.purseTotal;
    balances.bankAmount = figures.bank;
    return balances;
}

std::optional<Balances> Balances::read(store::Store& store)
{
    store::Transaction tx(store);
    Balances balances = of(tx);
    if (!tx.commit())
        return std::nullopt;
    return balances;
}

} // namespace ledger
