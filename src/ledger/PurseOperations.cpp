#include "PurseOperations.h"

#include "LedgerTables.h"

namespace ledger {

Outcome PurseOperations::move(int purseCode, store::Amount amount, PurseDirection direction,
                              const std::function<void()>& beforeSave)
{
    store::Transaction tx(m_store);
    const store::WideAmount current = tables::purseBalance(tx, purseCode);
    const MoneyFigures before = MoneyFigures::read(tx);
    if (!tx.ok())
        return tables::finish(tx);
    const auto balance = (direction == PurseDirection::PutIn ? current + amount : current - amount)
                             .roundedToCents()
                             .toAmount();
    if (!balance)
        return Outcome::OutOfRange;
    tables::writePurseBalance(tx, purseCode, *balance);
    return tables::finishInRange(tx, before, beforeSave);
}

} // namespace ledger
