#include "PurseOperations.h"

#include "LedgerTables.h"

#include <stdexcept>

namespace ledger {

Outcome PurseOperations::move(int purseCode, store::Amount amount, PurseDirection direction,
                              const std::function<void()>& beforeSave)
{
    store::Transaction tx(m_store);
    const store::Amount current = tables::purseBalance(tx, purseCode);
    if (!tx.ok())
        return tables::finish(tx);
    store::Amount balance;
    try {
        balance = (direction == PurseDirection::PutIn ? current + amount : current - amount).roundedToCents();
    } catch (const std::overflow_error&) {
        return Outcome::OutOfRange;
    }
    tables::writePurseBalance(tx, purseCode, balance);
    if (!tx.ok())
        return tables::finish(tx);
    if (beforeSave)
        beforeSave();
    return tables::finish(tx);
}

} // namespace ledger
