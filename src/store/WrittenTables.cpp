#include "WrittenTables.h"

#include <algorithm>
#include <sqlite3.h>
#include <strings.h>

namespace store {

namespace {

template <class T> void addOnce(std::vector<T>& list, const T& item)
{
    if (std::find(list.begin(), list.end(), item) == list.end())
        list.push_back(item);
}

} // namespace

WrittenTables::WrittenTables(sqlite3* db, std::vector<std::string> tables)
    : m_db(db), m_tables(std::move(tables)), m_idsChanged(m_tables.size(), false),
      m_deletedFrom(m_tables.size(), false), m_updated(m_tables.size()), m_written(m_tables.size()),
      m_alike(m_tables.size(), 0)
{
    sqlite3_set_authorizer(m_db, &WrittenTables::authorize, this);
    sqlite3_update_hook(m_db, &WrittenTables::rowChanged, this);
}

WrittenTables::~WrittenTables()
{
    sqlite3_update_hook(m_db, nullptr, nullptr);
    sqlite3_set_authorizer(m_db, nullptr, nullptr);
}

int WrittenTables::authorize(void* self, int action, const char* table, const char* column, const char*,
                             const char*)
{
    auto* written = static_cast<WrittenTables*>(self);
    const std::size_t index = written->indexOf(table);
    if (index == written->m_tables.size())
        return SQLITE_OK;
    // SQLite names the row id column so whatever the statement calls it.
    if (action == SQLITE_UPDATE && column && ::strcasecmp(column, "ROWID") == 0)
        addOnce(written->m_collected.rowids, index);
    else if (action == SQLITE_UPDATE && column)
        addOnce(written->m_collected.updates, {index, std::string(column)});
    else if (action == SQLITE_DELETE)
        addOnce(written->m_collected.deletes, index);
    return SQLITE_OK;
}

void WrittenTables::rowChanged(void* self, int operation, const char*, const char* table, long long rowid)
{
    auto* written = static_cast<WrittenTables*>(self);
    const std::size_t index = written->indexOf(table);
    if (index < written->m_tables.size())
        written->m_written[index].push_back({rowid, operation == SQLITE_DELETE, operation == SQLITE_UPDATE});
}

std::vector<WrittenTables::RowWrite> WrittenTables::rowsWritten(std::size_t table) const
{
    const std::vector<RowWrite>& named = m_written.at(table);
    const auto byRowid = [](const RowWrite& a, const RowWrite& b) { return a.rowid < b.rowid; };
    std::vector<RowWrite> sorted;
    if (!std::is_sorted(named.begin(), named.end(), byRowid)) { // an UPDATE goes through rows in order
        sorted = named;
        std::stable_sort(sorted.begin(), sorted.end(), byRowid);
    }
    const std::vector<RowWrite>& rows = sorted.empty() ? named : sorted;
    // The last write of each row id tells where it stands.
    std::vector<RowWrite> last;
    last.reserve(rows.size());
    bool updatedOnly = true;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        updatedOnly = updatedOnly && rows[i].updatedOnly;
        if (i + 1 == rows.size() || rows[i + 1].rowid != rows[i].rowid) {
            last.push_back(rows[i]);
            last.back().updatedOnly = updatedOnly;
            updatedOnly = true;
        }
    }
    return last;
}

void WrittenTables::startAlike()
{
    m_writtenBeforeAlike.clear();
    for (const std::vector<RowWrite>& rows : m_written)
        m_writtenBeforeAlike.push_back(rows.size());
}

void WrittenTables::endAlike(bool completed, long long rowsChanged)
{
    // An UPDATE changes one table itself; a second table written means a
    // trigger wrote it. The statement's table counts as written alike when
    // its own rows are all the table's writes in the transaction: none
    // before it, none by a trigger beside it.
    std::vector<std::size_t> grown;
    for (std::size_t i = 0; i < m_tables.size(); ++i)
        if (m_written[i].size() != m_writtenBeforeAlike.at(i))
            grown.push_back(i);
    for (const std::size_t i : grown)
        m_alike[i] =
            completed && grown.size() == 1 && static_cast<long long>(m_written[i].size()) == rowsChanged
                ? m_written[i].size()
                : 0;
    m_writtenBeforeAlike.clear();
}

bool WrittenTables::updatedAlike(std::size_t table) const
{
    return m_alike.at(table) > 0 && m_alike[table] == m_written[table].size();
}

bool WrittenTables::anyWritten() const
{
    return std::any_of(m_written.begin(), m_written.end(), [](const auto& rows) { return !rows.empty(); }) ||
           std::find(m_idsChanged.begin(), m_idsChanged.end(), true) != m_idsChanged.end() ||
           std::find(m_deletedFrom.begin(), m_deletedFrom.end(), true) != m_deletedFrom.end();
}

std::size_t WrittenTables::indexOf(const char* table) const
{
    if (!table)
        return m_tables.size();
    // Table names in SQL are case-insensitive (ASCII), as in Jet.
    const auto named = [&](std::size_t i) { return ::strcasecmp(m_tables[i].c_str(), table) == 0; };
    if (m_lastTable < m_tables.size() && named(m_lastTable))
        return m_lastTable;
    for (std::size_t i = 0; i < m_tables.size(); ++i)
        if (named(i))
            return m_lastTable = i;
    return m_tables.size();
}

void WrittenTables::mark(const Writes& writes)
{
    for (const std::size_t i : writes.rowids)
        m_idsChanged[i] = true;
    for (const std::size_t i : writes.deletes)
        m_deletedFrom[i] = true;
    for (const auto& [table, column] : writes.updates)
        addOnce(m_updated[table], column);
}

void WrittenTables::clearMarks()
{
    std::fill(m_idsChanged.begin(), m_idsChanged.end(), false);
    std::fill(m_deletedFrom.begin(), m_deletedFrom.end(), false);
    for (auto& columns : m_updated)
        columns.clear();
    // The lists keep their room: the next transaction as large finds it ready.
    for (auto& rows : m_written)
        rows.clear();
    std::fill(m_alike.begin(), m_alike.end(), 0);
}

} // namespace store
