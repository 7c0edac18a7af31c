#pragma once

#include "RowView.h"

#include <QVariantList>

struct sqlite3_stmt;

namespace store {

// Binds `params` to a prepared SELECT and reads all its rows; resets the
// statement afterwards. Throws SQLite::Exception for an engine error.
Rows readRows(sqlite3_stmt* statement, const QVariantList& params);
// The same, handing each row to `each` as it is read instead of keeping them.
void readRows(sqlite3_stmt* statement, const QVariantList& params, const RowHandler& each);
// A handler that keeps each row it is given in `rows`.
RowHandler keepingRows(Rows& rows);

} // namespace store
