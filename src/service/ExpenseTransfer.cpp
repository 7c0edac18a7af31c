#include "ExpenseTransfer.h"

#include "store/Copies.h"
#include "store/Transaction.h"

namespace service {

store::Outcome ExpenseTransfer::move(int fromAccount, int toAccount)
{
    store::Transaction tx(m_store);
    if (fromAccount == toAccount)
        return store::Outcome::committed(tx.commit());
    if (!store::Copies(m_store).before(store::CopyReason::ExpenseMove))
        return store::Outcome::notSaved();
    tx.assign(QStringLiteral("Bills"), QStringLiteral("F2"), toAccount, QStringLiteral("F2 = ?"),
              {fromAccount});
    return store::Outcome::committed(tx.commit());
}

} // namespace service
