#pragma once

namespace ledger {

// How a money operation ended. Nothing is written unless it is Done.
enum class Outcome
{
    Done,
    // The store could not run or save it and has already said why.
    NotSaved,
    // A balance would leave the range of the money columns; nothing was
    // written and nothing shown yet.
    OutOfRange,
};

} // namespace ledger
