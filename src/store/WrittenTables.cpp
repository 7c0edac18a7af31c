#include "WrittenTables.h"

#include <algorithm>
#include <sqlite3.h>
#include <strings.h>

namespace store {

WrittenTables::WrittenTables(sqlite3* db, std::vector<std::string> tables)
    : m_db(db), m_tables(std::move(tables)), m_marked(m_tables.size(), false)
{
    sqlite3_set_authorizer(m_db, &WrittenTables::authorize, this);
}

WrittenTables::~WrittenTables()
{
    sqlite3_set_authorizer(m_db, nullptr, nullptr);
}

int WrittenTables::authorize(void* self, int action, const char* table, const char*, const char*, const char*)
{
    if (action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE)
        static_cast<WrittenTables*>(self)->collect(table);
    return SQLITE_OK;
}

void WrittenTables::collect(const char* table)
{
    if (!table)
        return;
    // Table names in SQL are case-insensitive (ASCII), as in Jet.
    for (std::size_t i = 0; i < m_tables.size(); ++i)
        if (::strcasecmp(m_tables[i].c_str(), table) == 0 &&
            std::find(m_collected.begin(), m_collected.end(), i) == m_collected.end())
            m_collected.push_back(i);
}

void WrittenTables::mark(const std::vector<std::size_t>& tables)
{
    for (const std::size_t i : tables)
        m_marked[i] = true;
}

void WrittenTables::clearMarks()
{
    std::fill(m_marked.begin(), m_marked.end(), false);
}

} // namespace store
