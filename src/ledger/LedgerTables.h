#pragma once

#include "MoneyFigures.h"

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Transaction.h"

#include <QString>

#include <functional>

// Reads and writes of the money rows that several operations share; each runs
// in the caller's transaction.
namespace ledger::tables {

// The household's whole money: Tech row OSTATOK, column F2 (0 without a row).
store::Amount storedBalance(store::QuerySource& source);
void writeStoredBalance(store::Transaction& tx, store::Amount balance);

// A purse's money (0 when it has no Purse row) and the sum of all purses.
store::Amount purseBalance(store::Transaction& tx, int code);
store::WideAmount purseTotal(store::QuerySource& source);
// A purse's row is replaced, not updated: delete, then insert, so a purse that
// had no row gets one.
void writePurseBalance(store::Transaction& tx, int code, store::Amount balance);

// Texts of the catalogue and operation columns hold at most 255 characters; a
// longer answer of an input box is cut there, as a field with that limit
// would have stopped the typing. A character pair is never split.
inline constexpr int kTextLength = 255;
QString fitText(const QString& text);

// The refusal of an operation that would put a stored value or a figure of
// the main window outside the Currency range.
store::Outcome outOfRange();
// Commits unless the writes so far took a figure of `before` out of the
// Currency range (or further out): then the transaction is left to roll
// back and the operation is refused. `beforeSave` runs after that check and
// before the file is written.
store::Outcome finishInRange(store::Transaction& tx, const MoneyFigures& before,
                             const std::function<void()>& beforeSave = {});

} // namespace ledger::tables
