#pragma once

#include <SQLiteCpp/Exception.h>

#include <memory>
#include <sqlite3.h>
#include <string>

namespace store {

struct StatementFinalizer
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

// The plain SQLite statement, for the loops over many rows that load and
// save the data file.
using RawStatement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

// Throws SQLite::Exception when `sql` does not compile.
inline RawStatement prepareRaw(sqlite3* db, const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    if (const int rc = sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr); rc != SQLITE_OK)
        throw SQLite::Exception(db, rc);
    return RawStatement(statement);
}

// Steps the statement: true on a row, false once done. Throws
// SQLite::Exception for an engine error.
inline bool stepRow(sqlite3_stmt* statement)
{
    const int rc = sqlite3_step(statement);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        throw SQLite::Exception(sqlite3_db_handle(statement), rc);
    return rc == SQLITE_ROW;
}

} // namespace store
