#pragma once

struct sqlite3;

// SQL additions of the store's database, registered on every connection:
// the collation JETTEXT (texts compare without regard to case, as the Jet
// engine compares them) and DatePart(interval, date), which takes "yyyy",
// "q", "m", "d", "y" (day of year), "w" (weekday, Sunday = 1), "h", "n" or
// "s" of a stored date and gives a whole number, or Null for a Null date;
// IsStoredDate(text) is 1 for a valid "yyyy-MM-dd[ HH:mm:ss]" from the year
// 100 on, else 0 (Null for Null), and guards the date columns.
namespace store::sql {

void registerFunctions(sqlite3* db);

} // namespace store::sql
