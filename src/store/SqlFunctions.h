#pragma once

struct sqlite3;

// SQL additions of the store's database, registered on every connection:
// the collation JETTEXT (texts compare without regard to case, as the Jet
// engine compares them); IsStoredDate(text), 1 for a valid
// "yyyy-MM-dd[ HH:mm:ss]" from the year 100 on, else 0 (Null for Null), which
// guards the date columns.
// WideSum(money) adds a money column as SUM does, but never overflows: Null
// when it saw no value, a whole number while the total fits 64 bits, and the
// 16 bytes of the 128-bit total beyond that (read with WideAmount::fromStored).
namespace store::sql {

void registerFunctions(sqlite3* db);

} // namespace store::sql
