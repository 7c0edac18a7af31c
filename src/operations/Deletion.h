#pragma once

#include "Journal.h"
#include "Trash.h"

#include "store/Outcome.h"

#include <vector>

namespace store {
class Store;
}
namespace service {
class OperationDeletion;
}

namespace operations {

// Deletes the chosen operations together: each is kept in the trash and
// undoes its effect on the money as the service window's deletion does, all
// in one transaction with one automatic copy before it. When one of them
// cannot be deleted (a figure would leave the money columns' range) none is,
// and the refusal is returned. Hands back the action's number in the trash.
store::Result<std::int32_t> deleteOperations(store::Store& store, const std::vector<Operation>& chosen,
                                             TrashReason reason = TrashReason::Deleted);

// One operation deleted by the service window's deletion of its table.
store::Outcome deleteOne(service::OperationDeletion& deletion, Operation::Kind kind, std::int32_t number);

} // namespace operations
