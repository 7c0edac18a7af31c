#include "PurseOperations.h"

#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/Transaction.h"

namespace ledger {

store::Outcome PurseOperations::move(int purseCode, store::Amount amount, PurseDirection direction,
                                     const std::function<void()>& beforeSave)
{
    store::Transaction tx(m_store);
    const store::WideAmount current = store::money::purseBalance(tx, purseCode).value_or(store::Amount());
    const auto before = store::MoneyFigures::read(tx);
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::WideAmount typed = amount;
    const store::WideAmount moved = (direction == PurseDirection::PutIn ? typed : -typed).roundedToCents();
    const auto balance = (current + moved).toAmount();
    if (!balance)
        return store::MoneyFigures::outOfRange();
    store::money::writePurseBalance(tx, purseCode, *balance);
    return store::MoneyFigures::commitInRange(tx, before, beforeSave);
}

} // namespace ledger
