#include "ChangedRows.h"

#include "JetSqlValues.h"
#include "RawStatement.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <limits>

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
    const RawStatement count = prepareRaw(m_db, "SELECT count(*) FROM " + sql::tableName(m_table));
    if (const int rc = sqlite3_step(count.get()); rc != SQLITE_ROW)
        throw SQLite::Exception(m_db, rc);
    return sqlite3_column_int64(count.get(), 0);
}

// The rows now under the row ids written, in ascending order. A few are
// sought one by one; when many were written, as when the expenses of an
// account move to another, one pass over the table in row id order is
// cheaper than seeking each. Only the patched columns are read when no row
// is read whole.
class ChangedRows::Cursor
{
public:
    Cursor(const ChangedRows& rows, const std::vector<WrittenTables::RowWrite>& writes,
           const std::vector<Reading>& readings, const std::vector<std::size_t>& patched)
        : m_rows(rows), m_patched(patched), m_narrow(std::ranges::count(readings, Reading::Row) == 0)
    {
        if (std::ranges::count(readings, Reading::Nothing) == static_cast<std::ptrdiff_t>(readings.size()))
            return;
        const bool many = writes.size() * kShareSoughtOneByOne > rows.m_kept.size();
        const std::string prefix = many ? "" : "t.";
        std::string columns = prefix + "rowid, " + prefix + "*";
        if (m_narrow) {
            columns = prefix + "rowid";
            for (const std::size_t column : patched)
                columns +=
                    ", " + prefix + sql::quoteIdentifier(jet::toUtf8(rows.m_table.columns[column].name));
        }
        const std::string table = sql::tableName(rows.m_table);
        m_select = prepareRaw(
            rows.m_db, many ? "SELECT " + columns + " FROM " + table + " WHERE rowid >= ? ORDER BY rowid"
                            : "SELECT " + columns + " FROM json_each(?) AS ids CROSS JOIN " + table +
                                  " AS t ON t.rowid = ids.value");
        if (many) {
            sqlite3_bind_int64(m_select.get(), 1, writes.front().rowid);
        } else {
            m_ids = "[";
            for (std::size_t i = 0; i < writes.size(); ++i)
                if (readings[i] != Reading::Nothing)
                    m_ids += std::to_string(writes[i].rowid) + ',';
            m_ids.back() = ']';
            sqlite3_bind_text(m_select.get(), 1, m_ids.data(), static_cast<int>(m_ids.size()), SQLITE_STATIC);
        }
        m_done = false;
    }

    // Whether the row id is there; the row ids asked for ascend.
    bool seek(std::int64_t rowid)
    {
        while (!m_done && m_rowid < rowid) {
            const int rc = sqlite3_step(m_select.get());
            if (rc != SQLITE_ROW && rc != SQLITE_DONE)
                throw SQLite::Exception(m_rows.m_db, rc);
            m_done = rc == SQLITE_DONE;
            if (!m_done)
                m_rowid = sqlite3_column_int64(m_select.get(), 0);
        }
        return !m_done && m_rowid == rowid;
    }

    jet::Row row() const { return m_rows.readRow(m_select.get(), 1); }

    jet::Row patch() const
    {
        jet::Row values;
        values.reserve(m_patched.size());
        for (std::size_t k = 0; k < m_patched.size(); ++k)
            values.push_back(sql::readJetValue(m_rows.m_table.columns[m_patched[k]].type, m_select.get(),
                                               1 + static_cast<int>(m_narrow ? k : m_patched[k])));
        return values;
    }

private:
    const ChangedRows& m_rows;
    const std::vector<std::size_t>& m_patched;
    const bool m_narrow;
    RawStatement m_select;
    std::string m_ids;
    std::int64_t m_rowid = std::numeric_limits<std::int64_t>::min();
    bool m_done = true;
};

jet::TableChanges ChangedRows::read(const std::vector<WrittenTables::RowWrite>& writes,
                                    const std::vector<std::size_t>& patchable, bool alike)
{
    using Kind = jet::RowChange::Kind;
    // Where each write stands among the kept rows: writes ascend, so each
    // place is sought from the last one, in steps that double.
    std::vector<std::size_t> places(writes.size());
    std::vector<Reading> readings(writes.size(), Reading::Row);
    std::size_t from = 0;
    for (std::size_t i = 0; i < writes.size(); ++i) {
        std::size_t step = 1;
        while (from + step < m_kept.size() && m_kept[from + step] < writes[i].rowid)
            step *= 2;
        const auto end =
            m_kept.begin() + static_cast<std::ptrdiff_t>(std::min(from + step + 1, m_kept.size()));
        from = places[i] =
            std::lower_bound(m_kept.begin() + static_cast<std::ptrdiff_t>(from), end, writes[i].rowid) -
            m_kept.begin();
        const bool wasKept = from < m_kept.size() && m_kept[from] == writes[i].rowid;
        if (writes[i].deleted)
            readings[i] = Reading::Nothing;
        else if (wasKept && writes[i].updatedOnly && !patchable.empty())
            readings[i] = Reading::Patch;
    }
    Cursor current(*this, writes, readings, patchable);
    jet::TableChanges changes;
    if (std::ranges::count(readings, Reading::Patch) > 0)
        changes.patchedColumns = patchable;
    changes.rows.reserve(writes.size());
    m_rowids.clear();
    m_rowids.reserve(m_kept.size() + writes.size());
    bool sharedRead = false;
    std::size_t next = 0; // the first kept row id not yet in m_rowids
    for (std::size_t i = 0; i < writes.size(); ++i) {
        const std::int64_t rowid = writes[i].rowid;
        const std::size_t at = places[i];
        m_rowids.insert(m_rowids.end(), m_kept.begin() + next, m_kept.begin() + at);
        next = at;
        const bool wasKept = at < m_kept.size() && m_kept[at] == rowid;
        if (wasKept)
            ++next;
        if (readings[i] == Reading::Patch && alike && (sharedRead || current.seek(rowid))) {
            // The first row alike gives the values of them all.
            if (!sharedRead)
                changes.sharedPatch = current.patch();
            sharedRead = true;
            changes.rows.push_back({at, Kind::Patch, {}});
            m_rowids.push_back(rowid);
        } else if (readings[i] == Reading::Patch && current.seek(rowid)) {
            changes.rows.push_back({at, Kind::Patch, current.patch()});
            m_rowids.push_back(rowid);
        } else if (readings[i] == Reading::Row && current.seek(rowid)) {
            changes.rows.push_back({at, wasKept ? Kind::Replace : Kind::Insert, current.row()});
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
    const RawStatement select =
        prepareRaw(m_db, "SELECT rowid, * FROM " + sql::tableName(m_table) + " ORDER BY rowid");
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
