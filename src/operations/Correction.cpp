#include "Correction.h"

#include "Deletion.h"

#include "ledger/Bank.h"
#include "ledger/Expenses.h"
#include "store/Copies.h"
#include "store/Transaction.h"

namespace operations {

namespace {

store::Outcome make(store::Store& store, const Operation& op)
{
    if (op.kind != Operation::Kind::Expense)
        return ledger::Bank(store).record({op.date, op.amount, ledger::BankDirection::Deposit, op.name});
    return ledger::Expenses(store).book({op.date, op.account, op.amount, op.name, op.note, op.purse});
}

} // namespace

store::Result<std::int32_t> correctOperation(store::Store& store, const Operation& old,
                                             const Operation& corrected)
{
    store::Transaction tx(store);
    if (!store::Copies(store).before(store::CopyReason::Correction))
        return store::Outcome::notSaved();
    const store::Result<std::int32_t> deleted = deleteOperations(store, {old}, TrashReason::Corrected);
    if (!deleted)
        return deleted;
    if (store::Outcome made = make(store, corrected); !made)
        return made;
    // The operation keeps its number: the row just made takes it back.
    const QString table =
        old.kind == Operation::Kind::Expense ? QStringLiteral("Bills") : QStringLiteral("Bank");
    tx.execute(QStringLiteral("UPDATE %1 SET F0 = ? WHERE F0 = (SELECT MAX(F0) FROM %1)").arg(table),
               {old.number});
    if (!tx.commit())
        return store::Outcome::notSaved();
    return deleted.value();
}

} // namespace operations
