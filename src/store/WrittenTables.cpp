#include "WrittenTables.h"

#include <algorithm>
#include <sqlite3.h>
#include <strings.h>

namespace store {

namespace {

void addOnce(std::vector<std::size_t>& list, std::size_t index)
{
    if (std::find(list.begin(), list.end(), index) == list.end())
        list.push_back(index);
}

} // namespace

WrittenTables::WrittenTables(sqlite3* db, std::vector<std::string> tables)
    : m_db(db), m_tables(std::move(tables)), m_marked(m_tables.size(), false),
      m_deleted(m_tables.size(), false), m_lowestRow(m_tables.size(), kNoRow)
{
    sqlite3_set_authorizer(m_db, &WrittenTables::authorize, this);
    sqlite3_update_hook(m_db, &WrittenTables::rowChanged, this);
}

WrittenTables::~WrittenTables()
{
    sqlite3_update_hook(m_db, nullptr, nullptr);
    sqlite3_set_authorizer(m_db, nullptr, nullptr);
}

int WrittenTables::authorize(void* self, int action, const char* table, const char*, const char*, const char*)
{
    if (action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE)
        static_cast<WrittenTables*>(self)->collect(table, action == SQLITE_DELETE);
    return SQLITE_OK;
}

void WrittenTables::rowChanged(void* self, int, const char*, const char* table, long long rowid)
{
    auto* written = static_cast<WrittenTables*>(self);
    const std::size_t index = written->indexOf(table);
    if (index < written->m_tables.size())
        written->m_lowestRow[index] = std::min<std::int64_t>(written->m_lowestRow[index], rowid);
}

std::int64_t WrittenTables::lowestRowTouched(std::size_t table) const
{
    return m_deleted.at(table) ? 0 : m_lowestRow.at(table);
}

std::size_t WrittenTables::indexOf(const char* table) const
{
    if (!table)
        return m_tables.size();
    // Table names in SQL are case-insensitive (ASCII), as in Jet.
    for (std::size_t i = 0; i < m_tables.size(); ++i)
        if (::strcasecmp(m_tables[i].c_str(), table) == 0)
            return i;
    return m_tables.size();
}

void WrittenTables::collect(const char* table, bool deletes)
{
    const std::size_t index = indexOf(table);
    if (index == m_tables.size())
        return;
    addOnce(m_collected.any, index);
    if (deletes)
        addOnce(m_collected.deletes, index);
}

void WrittenTables::mark(const Writes& writes)
{
    for (const std::size_t i : writes.any)
        m_marked[i] = true;
    for (const std::size_t i : writes.deletes)
        m_deleted[i] = true;
}

void WrittenTables::clearMarks()
{
    std::fill(m_marked.begin(), m_marked.end(), false);
    std::fill(m_deleted.begin(), m_deleted.end(), false);
    std::fill(m_lowestRow.begin(), m_lowestRow.end(), kNoRow);
}

} // namespace store
