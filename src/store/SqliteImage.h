#pragma once

#include "jet/Database.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <memory>
#include <string>
#include <unordered_map>

namespace store {

// The data file's tables as an in-memory SQLite database: one STRICT table
// per Jet table, rows in file order (rowid), autonumbers handed out by
// triggers from a counter that never goes back.
class SqliteImage
{
public:
    // Throws std::exception for a value the store cannot keep (a date outside
    // the years 100 to 9999, a row of the wrong width).
    explicit SqliteImage(const jet::Database& database);

    // The current contents as a data file: the loaded file's password, tables
    // and columns, the rows in order and the autonumber counters.
    jet::Database dump() const;

    // A prepared statement for `sql`, reused from earlier calls. Use it to the
    // end before asking for another one. Throws SQLite::Exception.
    SQLite::Statement& statement(const std::string& sql);

    void begin();
    void commit();
    void rollback() noexcept;
    // Grows with every row written; tells whether a transaction changed anything.
    long long totalChanges() const;

private:
    void loadTable(const jet::Table& table);
    void startCounter(const jet::Table& table);
    jet::Table dumpTable(const jet::Table& layout) const;

    jet::Database m_layout; // the loaded file without rows
    SQLite::Database m_db;
    std::unordered_map<std::string, std::unique_ptr<SQLite::Statement>> m_statements;
};

// Resets a statement and its bindings when leaving the scope, also after an error.
class StatementScope
{
public:
    explicit StatementScope(SQLite::Statement& statement) : m_statement(statement) {}
    ~StatementScope();
    StatementScope(const StatementScope&) = delete;
    StatementScope& operator=(const StatementScope&) = delete;

private:
    SQLite::Statement& m_statement;
};

} // namespace store
