#pragma once

#include <QVariant>
#include <QVariantList>

struct sqlite3_stmt;

// Values of the program's statements in and out of SQLite.
namespace store::sql {

// Binds every value, in order, to the statement's parameters (?). An invalid
// QVariant or an invalid date is Null; Amount binds its Currency units; QDate
// and QDateTime bind the store's date text; bool binds 0 or 1. Throws
// std::invalid_argument for a value of another kind or a wrong count.
void bindParameters(sqlite3_stmt* statement, const QVariantList& values);

} // namespace store::sql
