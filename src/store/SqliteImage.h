#pragma once

#include "WrittenTables.h"
#include "jet/Database.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace store {

// The data file's tables as an in-memory SQLite database: one STRICT table
// per Jet table, rows in file order (rowid), autonumbers handed out by
// triggers from a counter that never goes back. It also keeps the decoded
// file, so that a save reads back from SQLite only the tables that changed.
class SqliteImage
{
public:
    // Throws std::exception for a value the store cannot keep (a date outside
    // the years 100 to 9999, a row of the wrong width).
    explicit SqliteImage(jet::Database database);
    ~SqliteImage();

    // The current contents as a data file: the loaded file's password, tables
    // and columns, the rows in order and the autonumber counters. Tables that
    // the transaction wrote are read back from SQLite, the others are the
    // ones of the last load or save. Valid until commit() or rollback().
    const jet::Database& contents();
    // The same, every table read back from SQLite.
    jet::Database dump() const;

    // A prepared statement for `sql`, reused from earlier calls; asking for
    // it counts as running it (its tables are marked as written). Use it to
    // the end before asking for another one. Throws SQLite::Exception.
    SQLite::Statement& statement(const std::string& sql);

    void begin();
    // Commits, and contents() becomes the state of the last save.
    void commit();
    // Rolls back, memory and contents() alike.
    void rollback() noexcept;
    // Grows with every row written; tells whether a transaction changed anything.
    long long totalChanges() const;

private:
    struct CachedStatement
    {
        std::unique_ptr<SQLite::Statement> statement;
        WrittenTables::Writes writes;
    };
    // Where an appended table stood before this transaction, for a rollback.
    struct AppendStart
    {
        std::size_t rows = 0;
        std::int32_t lastAutoNumber = 0;
    };

    void loadTable(const jet::Table& table);
    void startCounter(const jet::Table& table);
    jet::Table dumpTable(const jet::Table& layout) const;
    // Adds the rows inserted after the last synced one to the table; false,
    // changing nothing, when the rows do not add up to the table's count.
    bool appendNewRows(std::size_t index);
    std::int64_t largestRowid(const jet::Table& table) const;
    std::int32_t lastAutoNumber(const jet::Table& table) const;

    jet::Database m_contents; // as of the last load, save or contents()
    // The tables contents() replaced in this transaction, to put back on rollback.
    std::vector<std::optional<jet::Table>> m_replaced;
    // The tables contents() appended rows to in this transaction.
    std::vector<std::optional<AppendStart>> m_appended;
    // Per table, the SQLite row id of the last row m_contents holds: rows are
    // kept in row id order, so everything inserted later has a larger one.
    std::vector<std::int64_t> m_synced;
    std::optional<std::vector<std::int64_t>> m_syncedAtBegin;
    SQLite::Database m_db;
    std::unique_ptr<WrittenTables> m_written;
    std::unordered_map<std::string, CachedStatement> m_statements;
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
