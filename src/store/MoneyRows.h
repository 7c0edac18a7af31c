#pragma once

#include "Amount.h"
#include "QuerySource.h"
#include "WideAmount.h"

#include <optional>

namespace store {

class Transaction;

// The rows that hold the household's money, read and written one way by every
// operation: the stored balance (the whole money, bank and purses together)
// and the purses' rows. Writes run in the caller's transaction.
namespace money {

// Tech row OSTATOK, column F2; 0 without a row. As a lookup: the last
// matching row counts.
Amount storedBalance(QuerySource& source);
// Changes nothing in a file without an OSTATOK row.
void writeStoredBalance(Transaction& tx, Amount balance);

// The purse's row of money (the last one, as a lookup); nullopt when it has none.
std::optional<Amount> purseBalance(QuerySource& source, int code);
// The money of all purses, summed wide.
WideAmount purseTotal(QuerySource& source);
// Replaces the purse's row: delete, then insert, so a purse that had no row gets one.
void writePurseBalance(Transaction& tx, int code, Amount balance);
void removePurseBalance(Transaction& tx, int code);
// A purse that is in the catalogue or has a row of money; a deleted purse has
// neither.
bool purseExists(QuerySource& source, int code);

} // namespace money

} // namespace store
