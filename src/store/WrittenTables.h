#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

struct sqlite3;

namespace store {

// Which tables a transaction may have written, and how. SQLite's authorizer
// names every table a statement inserts into, updates or deletes from,
// triggers included, while the statement is prepared; each prepared statement
// keeps that list, and running it marks those tables. Marks are
// conservative: a statement that changed no row still marks its tables.
//
// A table whose old rows were left alone can be saved by reading just its
// new rows. SQLite's update hook names the row id of every row inserted,
// updated or deleted (an autonumber trigger updating the row it just numbered
// included); deleting all rows at once passes the hook by, so a DELETE
// statement counts as touching every row.
class WrittenTables
{
public:
    // What a statement writes: every table it writes, and those it deletes
    // from (indexes into the tables' list).
    struct Writes
    {
        std::vector<std::size_t> any;
        std::vector<std::size_t> deletes;
    };

    static constexpr std::int64_t kNoRow = std::numeric_limits<std::int64_t>::max();

    // `tables` are the names of the data file's tables, in file order.
    WrittenTables(sqlite3* db, std::vector<std::string> tables);
    ~WrittenTables();
    WrittenTables(const WrittenTables&) = delete;
    WrittenTables& operator=(const WrittenTables&) = delete;

    // Collects the tables written by the statements prepared from now on.
    void startCollecting() { m_collected = {}; }
    const Writes& collected() const { return m_collected; }

    void mark(const Writes& writes);
    bool isMarked(std::size_t table) const { return m_marked.at(table); }
    // The lowest row id written since the marks were cleared: 0 after a
    // DELETE statement, kNoRow when no row was written.
    std::int64_t lowestRowTouched(std::size_t table) const;
    void clearMarks();

private:
    static int authorize(void* self, int action, const char* table, const char*, const char*, const char*);
    static void rowChanged(void* self, int operation, const char* database, const char* table,
                           long long rowid);
    void collect(const char* table, bool deletes);
    std::size_t indexOf(const char* table) const; // m_tables.size() for another table

    sqlite3* m_db;
    std::vector<std::string> m_tables;
    Writes m_collected;
    std::vector<bool> m_marked;
    std::vector<bool> m_deleted;
    std::vector<std::int64_t> m_lowestRow;
};

} // namespace store
