#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct sqlite3;

namespace store {

// Which rows of the data file's tables a transaction wrote, and which
// columns its UPDATEs set (SQL names). SQLite's update
// hook names the row id of every row inserted, updated or deleted, an
// autonumber trigger updating the row it just numbered included. It misses
// two kinds of writes: a DELETE without WHERE may empty a table at once
// without naming its rows, so a table a DELETE ran on is marked, for the
// reader of the rows to count them; and an UPDATE of a row id names only the
// new id, so a statement that may change row ids marks its tables' rows as
// unknown. The authorizer finds both while a statement is prepared: each
// prepared statement keeps what it found, and running it marks that.
class WrittenTables
{
public:
    // Tables (indexes into the tables' list) a statement deletes from, those
    // whose row ids it may change, and the columns it may update, by table.
    struct Writes
    {
        std::vector<std::size_t> deletes;
        std::vector<std::size_t> rowids;
        std::vector<std::pair<std::size_t, std::string>> updates;
    };

    // What became of a row id last: written (inserted or updated) or
    // deleted; and whether every write to it was an update.
    struct RowWrite
    {
        std::int64_t rowid = 0;
        bool deleted = false;
        bool updatedOnly = false;
    };

    // `tables` are the names of the data file's tables, in file order.
    WrittenTables(sqlite3* db, std::vector<std::string> tables);
    ~WrittenTables();
    WrittenTables(const WrittenTables&) = delete;
    WrittenTables& operator=(const WrittenTables&) = delete;

    // Collects what the statements prepared from now on write.
    void startCollecting() { m_collected = {}; }
    const Writes& collected() const { return m_collected; }

    void mark(const Writes& writes);
    // False when a statement that may change row ids ran on the table.
    bool rowsKnown(std::size_t table) const { return !m_idsChanged.at(table); }
    // True when a DELETE ran on the table: rows may be gone unnamed.
    bool deletedFrom(std::size_t table) const { return m_deletedFrom.at(table); }
    // The columns UPDATE statements set in the table since the marks were cleared.
    const std::vector<std::string>& columnsUpdated(std::size_t table) const { return m_updated.at(table); }
    // The row ids written since the marks were cleared, ascending, each once.
    std::vector<RowWrite> rowsWritten(std::size_t table) const;

    // Brackets one statement that sets the same values in every row it
    // updates, an UPDATE whose SET takes only bound values. `rowsChanged` is
    // SQLite's count of the rows the statement itself changed, without those
    // its triggers wrote.
    void startAlike();
    void endAlike(bool completed, long long rowsChanged);
    // True when every row written in the table since the marks were cleared
    // was updated by one such statement and by nothing else: the updated
    // columns then hold the same values in all of them.
    bool updatedAlike(std::size_t table) const;
    bool anyWritten() const;
    void clearMarks();

private:
    static int authorize(void* self, int action, const char* table, const char* column, const char*,
                         const char*);
    static void rowChanged(void* self, int operation, const char* database, const char* table,
                           long long rowid);
    std::size_t indexOf(const char* table) const; // m_tables.size() for another table

    sqlite3* m_db;
    std::vector<std::string> m_tables;
    Writes m_collected;
    std::vector<bool> m_idsChanged;
    std::vector<bool> m_deletedFrom;
    std::vector<std::vector<std::string>> m_updated; // per table, each column once
    mutable std::size_t m_lastTable = 0;             // where the last row written was, looked at first
    std::vector<std::vector<RowWrite>> m_written;    // per table, in the order SQLite named them
    // Per table, the writes the one statement setting alike values made; 0
    // when none did, or the table had been written before it.
    std::vector<std::size_t> m_alike;
    std::vector<std::size_t> m_writtenBeforeAlike; // per table, while such a statement runs
};

} // namespace store
