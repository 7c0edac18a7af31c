#pragma once

#include "jet/Table.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// How a Jet table becomes an SQLite table of the store. Every table is STRICT,
// so a value of the wrong kind is refused by the statement that writes it;
// CHECK constraints refuse what the data file cannot hold (texts longer than
// the column, integers outside the column's range, malformed dates).
namespace store::sql {

// The table of autonumber counters: one row per table with an autonumber column.
inline constexpr char kCountersTable[] = "autonumber.counters";
// The function that tells a well-formed stored date text (see SqlFunctions.h).
inline constexpr char kIsStoredDate[] = "IsStoredDate";
// Case-insensitive comparison of texts, as the Jet engine compares them.
inline constexpr char kTextCollation[] = "JETTEXT";

std::string quoteIdentifier(std::string_view name);
std::string quoteLiteral(std::string_view text);

std::string createTable(const jet::Table& table);
// Whether `value` meets the CHECK constraint createTable gives its column,
// for rows loaded with the constraints switched off. A date is left to the
// binding, which refuses any it could not write as a stored date.
bool meetsCheck(const jet::Column& column, const jet::Value& value);
std::string createCounters();
// The row id of the row at `position` of a table as it is loaded: spaced,
// so that a row later taken in between (a restore putting back a row
// deleted since its backup) finds one.
constexpr std::int64_t loadedRowId(std::size_t position)
{
    return (static_cast<std::int64_t>(position) + 1) * 64;
}
// "rowid" and the table's columns as SQL names them, for an INSERT that sets the row id.
std::string rowidAndColumns(const jet::Table& table);
// The table's name as SQL names it.
std::string tableName(const jet::Table& table);
// The numbered autonumber column (ColumnMapping marks operation numbers that
// the file keeps as plain numbers); a GUID autonumber has no counter.
const jet::Column* numberedColumn(const jet::Table& table);
// The triggers that number rows inserted without a value in the autonumber
// column and raise the counter past numbers inserted or written explicitly.
std::string createAutoNumberTriggers(const jet::Table& table, const jet::Column& column);

} // namespace store::sql
