#include "SqliteImage.h"

#include "JetSqlValues.h"
#include "Schema.h"
#include "SqlFunctions.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <iterator>
#include <sqlite3.h>
#include <stdexcept>

namespace store {

namespace {

// Past this many different statement texts the cache starts afresh.
constexpr std::size_t kMaxCachedStatements = 256;

// The numbered autonumber column; a GUID autonumber has no counter.
const jet::Column* autoNumberColumn(const jet::Table& table)
{
    for (const jet::Column& column : table.columns)
        if (column.autoNumber && column.type == jet::ColumnType::Long)
            return &column;
    return nullptr;
}

struct Finalizer
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
// The plain SQLite statement for the loops over every cell of a table.
using RawStatement = std::unique_ptr<sqlite3_stmt, Finalizer>;

RawStatement prepare(sqlite3* db, const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    if (const int rc = sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr); rc != SQLITE_OK)
        throw SQLite::Exception(db, rc);
    return RawStatement(statement);
}

std::string tableName(const jet::Table& table)
{
    return sql::quoteIdentifier(jet::toUtf8(table.name));
}

} // namespace

StatementScope::~StatementScope()
{
    m_statement.tryReset();
    m_statement.clearBindings();
}

SqliteImage::SqliteImage(jet::Database database)
    : m_contents(std::move(database)), m_replaced(m_contents.tables.size()),
      m_appended(m_contents.tables.size()), m_synced(m_contents.tables.size(), 0),
      m_db(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX)
{
    m_contents.version = jet::Version::Jet4; // what a save writes
    sql::registerFunctions(m_db.getHandle());
    m_db.exec("BEGIN");
    m_db.exec(sql::createCounters());
    std::vector<std::string> names;
    for (const jet::Table& table : m_contents.tables) {
        m_db.exec(sql::createTable(table));
        loadTable(table);
        startCounter(table);
        names.push_back(jet::toUtf8(table.name));
    }
    // Built once the rows are in: sorting them all at once is quicker.
    if (schemaMismatch(m_contents).empty())
        for (const std::string& index : imageIndexes())
            m_db.exec(index);
    m_db.exec("COMMIT");
    for (std::size_t i = 0; i < m_contents.tables.size(); ++i)
        m_synced[i] = largestRowid(m_contents.tables[i]);
    m_written = std::make_unique<WrittenTables>(m_db.getHandle(), std::move(names));
}

SqliteImage::~SqliteImage()
{
    m_statements.clear();
    m_written.reset();
}

void SqliteImage::loadTable(const jet::Table& table)
{
    std::string sql = "INSERT INTO " + tableName(table) + " VALUES (";
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        sql += i ? ", ?" : "?";
    const RawStatement insert = prepare(m_db.getHandle(), sql + ")");
    std::vector<std::string> texts;
    for (const jet::Row& row : table.rows) {
        if (row.size() != table.columns.size())
            throw std::length_error("a row of table " + jet::toUtf8(table.name) +
                                    " has the wrong number of values");
        sql::bindJetRow(insert.get(), row, texts);
        if (const int rc = sqlite3_step(insert.get()); rc != SQLITE_DONE)
            throw SQLite::Exception(m_db.getHandle(), rc);
        sqlite3_reset(insert.get());
    }
}

// The counter starts past the file's last number and past every number in
// use, so that a file whose counter lags behind its rows still gets fresh ones.
void SqliteImage::startCounter(const jet::Table& table)
{
    const jet::Column* column = autoNumberColumn(table);
    if (!column)
        return;
    SQLite::Statement insert(
        m_db, "INSERT INTO " + sql::quoteIdentifier(sql::kCountersTable) + " SELECT ?, max(?, ifnull(max(" +
                  sql::quoteIdentifier(jet::toUtf8(column->name)) + "), 0)) FROM " + tableName(table));
    insert.bind(1, jet::toUtf8(table.name));
    insert.bind(2, table.lastAutoNumber);
    insert.exec();
    m_db.exec(sql::createAutoNumberTriggers(table, *column));
}

const jet::Database& SqliteImage::contents()
{
    for (std::size_t i = 0; i < m_contents.tables.size(); ++i) {
        if (!m_written->isMarked(i))
            continue;
        if (!m_syncedAtBegin)
            m_syncedAtBegin = m_synced;
        // Only rows after the ones kept were written: read just those.
        if (m_written->lowestRowTouched(i) > m_synced[i] && appendNewRows(i))
            continue;
        jet::Table fresh = dumpTable(m_contents.tables[i]);
        if (!m_replaced[i])
            m_replaced[i] = std::move(m_contents.tables[i]);
        m_contents.tables[i] = std::move(fresh);
        m_synced[i] = largestRowid(m_contents.tables[i]);
    }
    m_written->clearMarks();
    return m_contents;
}

bool SqliteImage::appendNewRows(std::size_t index)
{
    jet::Table& table = m_contents.tables[index];
    const RawStatement select = prepare(m_db.getHandle(), "SELECT rowid, * FROM " + tableName(table) +
                                                              " WHERE rowid > ? ORDER BY rowid");
    sqlite3_bind_int64(select.get(), 1, m_synced[index]);
    const int width = static_cast<int>(table.columns.size());
    std::vector<jet::Row> rows;
    std::int64_t last = m_synced[index];
    int rc = SQLITE_OK;
    while ((rc = sqlite3_step(select.get())) == SQLITE_ROW) {
        jet::Row& row = rows.emplace_back();
        row.reserve(table.columns.size());
        last = sqlite3_column_int64(select.get(), 0);
        for (int i = 0; i < width; ++i)
            row.push_back(
                sql::readJetValue(table.columns[static_cast<std::size_t>(i)].type, select.get(), i + 1));
    }
    if (rc != SQLITE_DONE)
        throw SQLite::Exception(m_db.getHandle(), rc);
    SQLite::Statement count(m_db, "SELECT count(*) FROM " + tableName(table));
    if (!count.executeStep() ||
        count.getColumn(0).getInt64() != static_cast<std::int64_t>(table.rows.size() + rows.size()))
        return false;
    if (!m_appended[index] && !m_replaced[index])
        m_appended[index] = AppendStart{table.rows.size(), table.lastAutoNumber};
    std::move(rows.begin(), rows.end(), std::back_inserter(table.rows));
    table.lastAutoNumber = lastAutoNumber(table);
    m_synced[index] = last;
    return true;
}

std::int64_t SqliteImage::largestRowid(const jet::Table& table) const
{
    SQLite::Statement select(m_db, "SELECT ifnull(max(rowid), 0) FROM " + tableName(table));
    return select.executeStep() ? select.getColumn(0).getInt64() : 0;
}

jet::Database SqliteImage::dump() const
{
    jet::Database result;
    result.version = m_contents.version;
    result.password = m_contents.password;
    result.creationDate = m_contents.creationDate;
    result.codePage = m_contents.codePage;
    for (const jet::Table& table : m_contents.tables)
        result.tables.push_back(dumpTable(table));
    return result;
}

jet::Table SqliteImage::dumpTable(const jet::Table& layout) const
{
    jet::Table table;
    table.name = layout.name;
    table.columns = layout.columns;
    table.lastAutoNumber = layout.lastAutoNumber;
    const RawStatement select =
        prepare(m_db.getHandle(), "SELECT * FROM " + tableName(table) + " ORDER BY rowid");
    const int width = static_cast<int>(table.columns.size());
    int rc = SQLITE_OK;
    while ((rc = sqlite3_step(select.get())) == SQLITE_ROW) {
        jet::Row& row = table.rows.emplace_back();
        row.reserve(table.columns.size());
        for (int i = 0; i < width; ++i)
            row.push_back(
                sql::readJetValue(table.columns[static_cast<std::size_t>(i)].type, select.get(), i));
    }
    if (rc != SQLITE_DONE)
        throw SQLite::Exception(m_db.getHandle(), rc);
    table.lastAutoNumber = lastAutoNumber(table);
    return table;
}

std::int32_t SqliteImage::lastAutoNumber(const jet::Table& table) const
{
    if (!autoNumberColumn(table))
        return table.lastAutoNumber;
    SQLite::Statement counter(m_db, "SELECT last FROM " + sql::quoteIdentifier(sql::kCountersTable) +
                                        " WHERE tbl = ?");
    counter.bind(1, jet::toUtf8(table.name));
    return counter.executeStep() ? static_cast<std::int32_t>(counter.getColumn(0).getInt64())
                                 : table.lastAutoNumber;
}

SQLite::Statement& SqliteImage::statement(const std::string& sql)
{
    auto found = m_statements.find(sql);
    if (found == m_statements.end()) {
        if (m_statements.size() >= kMaxCachedStatements)
            m_statements.clear();
        m_written->startCollecting();
        auto prepared = std::make_unique<SQLite::Statement>(m_db, sql);
        found = m_statements.emplace(sql, CachedStatement{std::move(prepared), m_written->collected()}).first;
    }
    m_written->mark(found->second.writes);
    return *found->second.statement;
}

void SqliteImage::begin()
{
    m_db.exec("BEGIN");
}

void SqliteImage::commit()
{
    m_db.exec("COMMIT");
    m_written->clearMarks();
    std::fill(m_replaced.begin(), m_replaced.end(), std::nullopt);
    std::fill(m_appended.begin(), m_appended.end(), std::nullopt);
    m_syncedAtBegin.reset();
}

void SqliteImage::rollback() noexcept
{
    if (!sqlite3_get_autocommit(m_db.getHandle()))
        sqlite3_exec(m_db.getHandle(), "ROLLBACK", nullptr, nullptr, nullptr);
    m_written->clearMarks();
    for (std::size_t i = 0; i < m_replaced.size(); ++i) {
        if (m_replaced[i]) {
            m_contents.tables[i] = std::move(*m_replaced[i]);
            m_replaced[i].reset();
        }
        // A table that was replaced after rows were appended comes back with
        // them; the cut removes them either way.
        if (m_appended[i]) {
            m_contents.tables[i].rows.resize(m_appended[i]->rows);
            m_contents.tables[i].lastAutoNumber = m_appended[i]->lastAutoNumber;
            m_appended[i].reset();
        }
    }
    if (m_syncedAtBegin)
        m_synced = std::move(*m_syncedAtBegin);
    m_syncedAtBegin.reset();
}

long long SqliteImage::totalChanges() const
{
    return sqlite3_total_changes64(m_db.getHandle());
}

} // namespace store
