#include "SqliteImage.h"

#include "JetSqlValues.h"
#include "RawStatement.h"
#include "SqlSchema.h"
#include "jet/RowDifference.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <limits>
#include <sqlite3.h>
#include <stdexcept>

// Taking in the rows of another file in place of the last file's.

namespace store {

bool SqliteImage::beginTaking(std::span<const std::uint8_t> file)
{
    if (!m_file || !m_file->canChangeRows() || !m_columns.keepsFileAsItIs() ||
        m_file->shape().tables.size() != m_fileTables || !sqlite3_get_autocommit(m_db.getHandle()))
        return false;
    std::optional<std::vector<jet::TableChanges>> changes = jet::rowChangesBetween(*m_file, file);
    if (!changes)
        return false;
    std::optional<jet::FileImage> taken;
    try {
        taken.emplace(*m_file, *changes);
    } catch (const std::exception&) {
        return false; // rows this writer cannot store as the file has them
    }
    if (!std::ranges::equal(taken->bytes(), file))
        return false;
    std::vector<std::vector<std::int64_t>> rowids(m_fileTables);
    m_db.exec("BEGIN");
    try {
        for (std::size_t t = 0; t < m_fileTables; ++t) {
            rowids[t] = (*changes)[t].rows.empty() ? m_rowids[t] : writeChanges(t, (*changes)[t]);
            if (sql::numberedColumn(m_shape.tables[t])) {
                SQLite::Statement counter(m_db, "UPDATE " + sql::quoteIdentifier(sql::kCountersTable) +
                                                    " SET last = ? WHERE tbl = ?");
                counter.bind(1, taken->shape().tables[t].lastAutoNumber);
                counter.bind(2, jet::toUtf8(m_shape.tables[t].name));
                counter.exec();
            }
        }
    } catch (const std::exception&) {
        rollback();
        return false;
    }
    m_taking = Taking{std::move(*taken), std::move(rowids)};
    return true;
}

// Rows keep their row ids when replaced; a row put in takes the one after
// the row before it, which must stay below that of the next row kept, so
// that row ids still follow the file's order.
std::vector<std::int64_t> SqliteImage::writeChanges(std::size_t table, const jet::TableChanges& changes)
{
    using Kind = jet::RowChange::Kind;
    const jet::Table& shape = m_shape.tables[table];
    const std::vector<std::int64_t>& kept = m_rowids[table];
    std::string values, assignments;
    for (const jet::Column& column : shape.columns) {
        values += ", ?";
        assignments +=
            (assignments.empty() ? "" : ", ") + sql::quoteIdentifier(jet::toUtf8(column.name)) + " = ?";
    }
    const RawStatement remove =
        prepareRaw(m_db.getHandle(), "DELETE FROM " + sql::tableName(shape) + " WHERE rowid = ?");
    const RawStatement replace = prepareRaw(m_db.getHandle(), "UPDATE " + sql::tableName(shape) + " SET " +
                                                                  assignments + " WHERE rowid = ?");
    const RawStatement insert =
        prepareRaw(m_db.getHandle(), "INSERT INTO " + sql::tableName(shape) + " (" +
                                         sql::rowidAndColumns(shape) + ") VALUES (?" + values + ")");
    const int width = static_cast<int>(shape.columns.size());
    std::vector<std::string> texts;
    const auto run = [&](sqlite3_stmt* statement) {
        if (const int rc = sqlite3_step(statement); rc != SQLITE_DONE)
            throw SQLite::Exception(m_db.getHandle(), rc);
        sqlite3_reset(statement);
    };
    // The row id of the first row at or after each position that stays.
    std::vector<bool> removed(kept.size() + 1);
    for (const jet::RowChange& change : changes.rows)
        if (change.kind == Kind::Remove)
            removed.at(change.position) = true;
    const auto nextKept = [&](std::size_t position) {
        while (position < kept.size() && removed[position])
            ++position;
        return position < kept.size() ? kept[position] : std::numeric_limits<std::int64_t>::max();
    };
    std::vector<std::int64_t> after;
    after.reserve(kept.size() + changes.rows.size());
    std::size_t next = 0; // the first kept row not yet in `after`
    for (const jet::RowChange& change : changes.rows) {
        after.insert(after.end(), kept.begin() + next, kept.begin() + change.position);
        next = change.position;
        if (change.kind == Kind::Insert) {
            const std::int64_t rowid = (after.empty() ? 0 : after.back()) + 1;
            if (rowid >= nextKept(change.position))
                throw std::range_error("no row id left between two rows");
            sqlite3_bind_int64(insert.get(), 1, rowid);
            sql::bindJetRow(insert.get(), change.row, texts, 2);
            run(insert.get());
            after.push_back(rowid);
            continue;
        }
        sqlite3_stmt* statement = change.kind == Kind::Remove ? remove.get() : replace.get();
        if (change.kind == Kind::Replace) {
            sql::bindJetRow(statement, change.row, texts, 1);
            after.push_back(kept.at(change.position));
        }
        sqlite3_bind_int64(statement, change.kind == Kind::Remove ? 1 : width + 1, kept.at(change.position));
        run(statement);
        next = change.position + 1;
    }
    after.insert(after.end(), kept.begin() + next, kept.end());
    return after;
}

void SqliteImage::finishTaking()
{
    m_db.exec("COMMIT");
    for (std::size_t t = 0; t < m_fileTables; ++t) {
        m_rowids[t] = std::move(m_taking->rowids[t]);
        m_shape.tables[t].lastAutoNumber = m_taking->file.shape().tables[t].lastAutoNumber;
    }
    m_file = std::move(m_taking->file);
    m_taking.reset();
    m_written->clearMarks();
}

} // namespace store
