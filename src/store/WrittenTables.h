#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct sqlite3;

namespace store {

// Which tables a transaction may have written. SQLite's authorizer names
// every table a statement inserts into, updates or deletes from, triggers
// included, while the statement is prepared; each prepared statement keeps
// that list, and running it marks those tables. A save then reads back only
// the marked tables. Marks are conservative: a statement that changed no row
// still marks its tables.
class WrittenTables
{
public:
    // `tables` are the names of the data file's tables, in file order.
    WrittenTables(sqlite3* db, std::vector<std::string> tables);
    ~WrittenTables();
    WrittenTables(const WrittenTables&) = delete;
    WrittenTables& operator=(const WrittenTables&) = delete;

    // Collects the tables written by the statements prepared from now on.
    void startCollecting() { m_collected.clear(); }
    const std::vector<std::size_t>& collected() const { return m_collected; }

    void mark(const std::vector<std::size_t>& tables);
    bool isMarked(std::size_t table) const { return m_marked.at(table); }
    void clearMarks();

private:
    static int authorize(void* self, int action, const char* table, const char*, const char*, const char*);
    void collect(const char* table);

    sqlite3* m_db;
    std::vector<std::string> m_tables;
    std::vector<std::size_t> m_collected;
    std::vector<bool> m_marked;
};

} // namespace store
