#pragma once

#include "Journal.h"

#include "store/Outcome.h"

#include <vector>

namespace store {
class Store;
}

namespace operations {

// Deletes the chosen operations together: each undoes its effect on the
// money as the service window's deletion does, all in one transaction with
// one automatic copy before it. When one of them cannot be deleted (a figure
// would leave the money columns' range) none is, and the refusal is returned.
store::Outcome deleteOperations(store::Store& store, const std::vector<Operation>& chosen);

} // namespace operations
