#include "Balances.h"

#include "store/CatalogueEntry.h"
#include "store/MoneyFigures.h"
#include "store/Transaction.h"

namespace ledger {

Balances Balances::of(store::QuerySource& source)
{
    Balances balances;
    balances.accountEntries = store::CatalogueEntry::listOf(source, QStringLiteral("Bills_Dict"));
    balances.purseEntries = store::CatalogueEntry::listOf(source, QStringLiteral("Purse_Dict"));
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
