#pragma once

#include "Journal.h"

#include "store/Outcome.h"

namespace store {
class Store;
}

namespace operations {

// Puts `corrected` in place of `old`, under the old number: the money moves
// as if the old operation had been deleted (as the service window deletes
// it) and the corrected one made (as the main window makes it, with its
// checks and messages), in one transaction with one automatic copy before it.
// For a bank operation the corrected amount is signed (a negative one is a
// withdrawal); for an expense it is the amount spent. Nothing is written when
// any step is refused. The old operation is kept in the trash; hands back
// the action's number there.
store::Result<std::int32_t> correctOperation(store::Store& store, const Operation& old,
                                             const Operation& corrected);

} // namespace operations
