#include "Deletion.h"

#include "service/OperationDeletion.h"
#include "store/Copies.h"
#include "store/Transaction.h"

namespace operations {

store::Outcome deleteOne(service::OperationDeletion& deletion, Operation::Kind kind, std::int32_t number)
{
    return kind == Operation::Kind::Expense ? deletion.deleteExpense(number)
                                            : deletion.deleteBankOperation(number);
}

store::Result<std::int32_t> deleteOperations(store::Store& store, const std::vector<Operation>& chosen,
                                             TrashReason reason)
{
    store::Transaction tx(store);
    if (!store::Copies(store).before(store::CopyReason::OperationDeletion))
        return store::Outcome::notSaved();
    TrashAction trash(tx, reason);
    service::OperationDeletion deletion(store);
    for (const Operation& operation : chosen) {
        trash.keep(operation.kind, operation.number);
        store::Outcome outcome = deleteOne(deletion, operation.kind, operation.number);
        if (!outcome)
            return outcome; // leaving without commit rolls every step back
    }
    const std::int32_t action = trash.finish();
    if (!tx.commit())
        return store::Outcome::notSaved();
    return action;
}

} // namespace operations
