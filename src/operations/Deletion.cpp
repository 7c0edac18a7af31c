#include "Deletion.h"

#include "service/OperationDeletion.h"
#include "store/Transaction.h"

namespace operations {

store::Outcome deleteOperations(store::Store& store, const std::vector<Operation>& chosen)
{
    store::Transaction tx(store);
    service::OperationDeletion deletion(store);
    for (const Operation& operation : chosen) {
        store::Outcome outcome = operation.kind == Operation::Kind::Expense
                                     ? deletion.deleteExpense(operation.number)
                                     : deletion.deleteBankOperation(operation.number);
        if (!outcome)
            return outcome; // leaving without commit rolls every step back
    }
    return store::Outcome::committed(tx.commit());
}

} // namespace operations
