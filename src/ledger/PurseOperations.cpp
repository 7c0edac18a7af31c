#include "PurseOperations.h"

#include "LedgerTables.h"

namespace ledger {

store::Outcome PurseOperations::move(int purseCode, store::Amount amount, PurseDirection direction,
                                     const std::function<void()>& beforeSave)
{
    store::Transaction tx(m_store);
    const store::WideAmount current = tables::purseBalance(tx, purseCode);
    const MoneyFigures before = MoneyFigures::read(tx);
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::WideAmount typed = amount;
    const store::WideAmount moved = (direction == PurseDirection::PutIn ? typed : -typed).roundedToCents();
    const auto balance = (current + moved).toAmount();
    if (!balance)
        return tables::outOfRange();
    tables::writePurseBalance(tx, purseCode, *balance);
    return tables::finishInRange(tx, before, beforeSave);
}

} // namespace ledger
