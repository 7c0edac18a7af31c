#include "SqliteImage.h"

#include "JetSqlValues.h"
#include "SqlFunctions.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <sqlite3.h>
#include <stdexcept>

namespace store {

namespace {

// Past this many different statement texts the cache starts afresh.
constexpr std::size_t kMaxCachedStatements = 256;

const jet::Column* autoNumberColumn(const jet::Table& table)
{
    for (const jet::Column& column : table.columns)
        if (column.autoNumber)
            return &column;
    return nullptr;
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

SqliteImage::SqliteImage(const jet::Database& database)
    : m_db(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
{
    sql::registerFunctions(m_db.getHandle());
    m_layout = database;
    for (jet::Table& table : m_layout.tables)
        table.rows.clear();
    m_db.exec("BEGIN");
    m_db.exec(sql::createCounters());
    for (const jet::Table& table : database.tables) {
        m_db.exec(sql::createTable(table));
        loadTable(table);
        startCounter(table);
    }
    m_db.exec("COMMIT");
}

void SqliteImage::loadTable(const jet::Table& table)
{
    std::string sql = "INSERT INTO " + tableName(table) + " VALUES (";
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        sql += i ? ", ?" : "?";
    SQLite::Statement insert(m_db, sql + ")");
    for (const jet::Row& row : table.rows) {
        if (row.size() != table.columns.size())
            throw std::length_error("a row of table " + jet::toUtf8(table.name) +
                                    " has the wrong number of values");
        for (std::size_t i = 0; i < row.size(); ++i)
            sql::bindJetValue(insert, static_cast<int>(i + 1), row[i]);
        insert.exec();
        insert.reset();
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

jet::Database SqliteImage::dump() const
{
    jet::Database result = m_layout;
    result.version = jet::Version::Jet4;
    for (jet::Table& table : result.tables)
        table = dumpTable(table);
    return result;
}

jet::Table SqliteImage::dumpTable(const jet::Table& layout) const
{
    jet::Table table = layout;
    SQLite::Statement select(m_db, "SELECT * FROM " + tableName(table) + " ORDER BY rowid");
    const int width = static_cast<int>(table.columns.size());
    while (select.executeStep()) {
        jet::Row& row = table.rows.emplace_back();
        row.reserve(table.columns.size());
        for (int i = 0; i < width; ++i)
            row.push_back(
                sql::readJetValue(table.columns[static_cast<std::size_t>(i)].type, select.getColumn(i)));
    }
    if (autoNumberColumn(table)) {
        SQLite::Statement counter(m_db, "SELECT last FROM " + sql::quoteIdentifier(sql::kCountersTable) +
                                            " WHERE tbl = ?");
        counter.bind(1, jet::toUtf8(table.name));
        if (counter.executeStep())
            table.lastAutoNumber = static_cast<std::int32_t>(counter.getColumn(0).getInt64());
    }
    return table;
}

SQLite::Statement& SqliteImage::statement(const std::string& sql)
{
    if (const auto found = m_statements.find(sql); found != m_statements.end())
        return *found->second;
    if (m_statements.size() >= kMaxCachedStatements)
        m_statements.clear();
    auto prepared = std::make_unique<SQLite::Statement>(m_db, sql);
    return *m_statements.emplace(sql, std::move(prepared)).first->second;
}

void SqliteImage::begin()
{
    m_db.exec("BEGIN");
}

void SqliteImage::commit()
{
    m_db.exec("COMMIT");
}

void SqliteImage::rollback()
{
    if (!sqlite3_get_autocommit(m_db.getHandle()))
        m_db.exec("ROLLBACK");
}

long long SqliteImage::totalChanges() const
{
    return sqlite3_total_changes64(m_db.getHandle());
}

} // namespace store
