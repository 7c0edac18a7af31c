#include "Clearing.h"

#include "store/Copies.h"
#include "store/MoneyRows.h"
#include "store/Transaction.h"

namespace service {

store::Outcome Clearing::clearAll()
{
    store::Transaction tx(m_store);
    if (!store::Copies(m_store).before(store::CopyReason::Clearing))
        return store::Outcome::notSaved();
    for (const char* statement : {
             "DELETE FROM Bills",
             "DELETE FROM Bills_Dict",
             "DELETE FROM Bank",
             "DELETE FROM Purse",
             "DELETE FROM Purse_Dict",
             "UPDATE Tech SET F3 = Null WHERE F0 = 'BACKUP'",
         })
        tx.execute(QString::fromLatin1(statement));
    store::money::writeStoredBalance(tx, store::Amount());
    return store::Outcome::committed(tx.commit());
}

} // namespace service
