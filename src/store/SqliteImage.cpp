#include "SqliteImage.h"

#include "JetSqlValues.h"
#include "SqlFunctions.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <array>
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

SqliteImage::SqliteImage(const jet::Database& database)
    : m_db(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX)
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
    const RawStatement insert = prepare(m_db.getHandle(), sql + ")");
    std::vector<std::array<char, 24>> dates;
    for (const jet::Row& row : table.rows) {
        if (row.size() != table.columns.size())
            throw std::length_error("a row of table " + jet::toUtf8(table.name) +
                                    " has the wrong number of values");
        sql::bindJetRow(insert.get(), row, dates);
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

void SqliteImage::rollback() noexcept
{
    if (!sqlite3_get_autocommit(m_db.getHandle()))
        sqlite3_exec(m_db.getHandle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

long long SqliteImage::totalChanges() const
{
    return sqlite3_total_changes64(m_db.getHandle());
}

} // namespace store
