#include "ChangedRows.h"

#include "JetSqlValues.h"
#include "RawStatement.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <optional>

namespace store {

namespace {

// Fewer written rows than one in this many of the table are sought one by one.
constexpr std::size_t kShareSoughtOneByOne = 8;

} // namespace

ChangedRows::ChangedRows(sqlite3* db, const jet::Table& table, const std::vector<std::int64_t>& kept)
    : m_db(db), m_table(table), m_kept(kept)
{}

jet::Row ChangedRows::readRow(sqlite3_stmt* select, int firstColumn) const
{
    jet::Row row;
    row.reserve(m_table.columns.size());
    for (std::size_t i = 0; i < m_table.columns.size(); ++i)
        row.push_back(sql::readJetValue(m_table.columns[i].type, select, firstColumn + static_cast<int>(i)));
    return row;
}

std::int64_t ChangedRows::countRows() const
{
    const RawStatement count =
        prepareRaw(m_db, "SELECT count(*) FROM " + sql::quoteIdentifier(jet::toUtf8(m_table.name)));
    if (const int rc = sqlite3_step(count.get()); rc != SQLITE_ROW)
        throw SQLite::Exception(m_db, rc);
    return sqlite3_column_int64(count.get(), 0);
}

// The rows now under the row ids written (none for a row id deleted last).
// A few are sought one by one; when many were written, as when the expenses
// of an account move to another, one pass over the table in row id order is
// cheaper than seeking each.
std::vector<std::optional<jet::Row>>
ChangedRows::currentRows(const std::vector<WrittenTables::RowWrite>& writes) const
{
    std::vector<std::optional<jet::Row>> rows(writes.size());
    const std::string table = sql::quoteIdentifier(jet::toUtf8(m_table.name));
    const bool many = writes.size() * kShareSoughtOneByOne > m_kept.size();
    std::string ids = "[";
    if (!many) {
        for (const WrittenTables::RowWrite& write : writes)
            if (!write.deleted)
                ids += std::to_string(write.rowid) + ',';
        if (ids.size() == 1)
            return rows;
        ids.back() = ']';
    }
    const RawStatement select =
        prepareRaw(m_db, many ? "SELECT rowid, * FROM " + table + " WHERE rowid >= ? ORDER BY rowid"
                              : "SELECT t.rowid, t.* FROM json_each(?) AS ids CROSS JOIN " + table +
                                    " AS t ON t.rowid = ids.value");
    if (many) {
        sqlite3_bind_int64(select.get(), 1, writes.front().rowid);
    } else {
        sqlite3_bind_text(select.get(), 1, ids.data(), static_cast<int>(ids.size()), SQLITE_STATIC);
    }
    std::size_t i = 0;
    int rc = SQLITE_DONE;
    while (i < writes.size() && (rc = sqlite3_step(select.get())) == SQLITE_ROW) {
        const std::int64_t rowid = sqlite3_column_int64(select.get(), 0);
        while (i < writes.size() && writes[i].rowid < rowid)
            ++i;
        if (i < writes.size() && writes[i].rowid == rowid)
            rows[i] = readRow(select.get(), 1);
    }
    if (rc != SQLITE_DONE && rc != SQLITE_ROW)
        throw SQLite::Exception(m_db, rc);
    return rows;
}

jet::TableChanges ChangedRows::read(const std::vector<WrittenTables::RowWrite>& writes)
{
    using Kind = jet::RowChange::Kind;
    std::vector<std::optional<jet::Row>> current = currentRows(writes);
    jet::TableChanges changes;
    m_rowids.clear();
    m_rowids.reserve(m_kept.size() + writes.size());
    std::size_t next = 0; // the first kept row id not yet in m_rowids
    for (std::size_t i = 0; i < writes.size(); ++i) {
        const std::int64_t rowid = writes[i].rowid;
        const std::size_t at = std::lower_bound(m_kept.begin(), m_kept.end(), rowid) - m_kept.begin();
        m_rowids.insert(m_rowids.end(), m_kept.begin() + next, m_kept.begin() + at);
        next = at;
        const bool wasKept = at < m_kept.size() && m_kept[at] == rowid;
        if (wasKept)
            ++next;
        if (current[i]) {
            changes.rows.push_back({at, wasKept ? Kind::Replace : Kind::Insert, std::move(*current[i])});
            m_rowids.push_back(rowid);
        } else if (wasKept) {
            changes.rows.push_back({at, Kind::Remove, {}});
        }
    }
    m_rowids.insert(m_rowids.end(), m_kept.begin() + next, m_kept.end());
    if (countRows() != static_cast<std::int64_t>(m_rowids.size()))
        return readAll();
    return changes;
}

jet::TableChanges ChangedRows::readAll()
{
    jet::TableChanges changes;
    changes.replacesAll = true;
    const RawStatement select = prepareRaw(
        m_db, "SELECT rowid, * FROM " + sql::quoteIdentifier(jet::toUtf8(m_table.name)) + " ORDER BY rowid");
    m_rowids.clear();
    int rc = SQLITE_OK;
    while ((rc = sqlite3_step(select.get())) == SQLITE_ROW) {
        m_rowids.push_back(sqlite3_column_int64(select.get(), 0));
        changes.rows.push_back({0, jet::RowChange::Kind::Insert, readRow(select.get(), 1)});
    }
    if (rc != SQLITE_DONE)
        throw SQLite::Exception(m_db, rc);
    return changes;
}

} // namespace store
