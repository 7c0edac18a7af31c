#pragma once

#include "jet/Column.h"
#include "jet/Value.h"

#include <string>
#include <vector>

struct sqlite3_stmt;

// Cells of the data file in and out of the store's SQLite tables: Currency as
// whole 1/10000 units, dates as "yyyy-MM-dd[ HH:mm:ss]" texts, Boolean as 0/1,
// texts as UTF-8 exactly as they are (a leading U+FEFF and lone surrogates
// included), GUIDs and binary data as blobs.
// These run once per cell when a file is loaded or saved, so they use the
// plain SQLite interface and copy nothing they need not copy.
namespace store::sql {

// Binds the values of one row to an INSERT of all columns, from parameter
// `first` on. Blobs are bound without copying: `row` must outlive the step.
// `texts` holds the texts and dates as SQLite gets them until then, from
// place `first` - 1 on; it grows only when too short, which moves the texts
// bound before. Throws std::range_error for a date outside the years 100 to
// 9999 and SQLite::Exception when SQLite refuses a value.
void bindJetRow(sqlite3_stmt* statement, const std::vector<jet::Value>& row, std::vector<std::string>& texts,
                int first = 1);
// Throws as bindJetRow would for the row, without binding it.
void checkJetRow(const std::vector<jet::Value>& row);
// The cell of a column of that type. Throws std::range_error for a value the
// column cannot hold (the table's constraints normally keep those out).
jet::Value readJetValue(jet::ColumnType type, sqlite3_stmt* statement, int column);

} // namespace store::sql
