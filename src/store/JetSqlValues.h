#pragma once

#include "jet/Column.h"
#include "jet/Value.h"

namespace SQLite {
class Column;
class Statement;
} // namespace SQLite

// Cells of the data file in and out of the store's SQLite tables: Currency as
// whole 1/10000 units, dates as "yyyy-MM-dd[ HH:mm:ss]" texts, Boolean as 0/1,
// texts as UTF-8, GUIDs and binary data as blobs.
namespace store::sql {

// Throws std::range_error for a date outside the years 100 to 9999.
void bindJetValue(SQLite::Statement& statement, int index, const jet::Value& value);
// The cell of a column of that type. Throws std::range_error for a value the
// column cannot hold (the table's constraints normally keep those out).
jet::Value readJetValue(jet::ColumnType type, const SQLite::Column& cell);

} // namespace store::sql
