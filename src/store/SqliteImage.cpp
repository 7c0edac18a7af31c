#include "SqliteImage.h"

#include "ChangedRows.h"
#include "JetSqlValues.h"
#include "RawStatement.h"
#include "Schema.h"
#include "SqlFunctions.h"
#include "SqlSchema.h"
#include "jet/Error.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <future>
#include <iterator>
#include <sqlite3.h>
#include <stdexcept>
#include <utility>

namespace store {

namespace {

// Past this many different statement texts the cache starts afresh.
constexpr std::size_t kMaxCachedStatements = 256;
constexpr std::size_t kRowsPerInsert = 50;
constexpr std::size_t kRowsBetweenCalls = 20000; // of loadTable's `inserted`
const int kOpenFlags = SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX;

} // namespace

StatementScope::~StatementScope()
{
    m_statement.tryReset();
    m_statement.clearBindings();
}

SqliteImage::SqliteImage(jet::Database database) : m_columns(database), m_db(":memory:", kOpenFlags)
{
    load(database);
}

SqliteImage::SqliteImage(jet::Database database, std::vector<std::uint8_t>& file)
    : m_columns(database), m_db(":memory:", kOpenFlags)
{
    const auto encode = [&database, &file]() -> std::optional<jet::FileImage> {
        try {
            jet::FileImage encoded(database);
            if (encoded.canChangeRows() && std::ranges::equal(encoded.bytes(), file))
                return encoded;
        } catch (const jet::Error&) {
            // A value this writer cannot store: the first save says which.
        }
        return std::nullopt;
    };
    // Loading turns values the file keeps in other kinds into the store's
    // own, in place: such a file is encoded first. Any other is encoded on a
    // second thread while its rows go into SQLite.
    if (!m_columns.keepsFileAsItIs()) {
        keepEncoded(encode(), file);
        load(database);
        return;
    }
    load(database, std::async(std::launch::async, encode), &file);
}

SqliteImage::~SqliteImage()
{
    m_statements.clear();
    m_written.reset();
}

void SqliteImage::keepEncoded(std::optional<jet::FileImage> encoded, std::vector<std::uint8_t>& file)
{
    if (!encoded)
        return;
    m_file.emplace(std::move(*encoded));
    std::vector<std::uint8_t>().swap(file); // one copy of the file is held, not two
}

// The rows of each table are let go of as they go into SQLite, so that
// the decoded rows and SQLite's copy of them are not all held at once; but
// none before `encoding`, which reads them all, has ended.
void SqliteImage::load(jet::Database& database, std::future<std::optional<jet::FileImage>> encoding,
                       std::vector<std::uint8_t>* file)
{
    m_fileTables = database.tables.size();
    std::vector<jet::Table> made;
    for (jet::Table& table : tablesMadeOnFirstUse())
        if (!database.table(table.name))
            made.push_back(std::move(table));
    std::vector<jet::Table*> tables;
    for (jet::Table& table : database.tables)
        tables.push_back(&table);
    for (jet::Table& table : made)
        tables.push_back(&table);
    m_columns.toStore(database); // changes no value of a file kept as it is
    sql::registerFunctions(m_db.getHandle());
    // Nothing of this database outlives the process: freed space need not be wiped.
    m_db.exec("PRAGMA secure_delete = OFF");
    m_db.exec("PRAGMA temp_store = MEMORY");
    // The rows are checked here, far quicker than SQLite's CHECK constraints.
    m_db.exec("PRAGMA ignore_check_constraints = ON");
    m_db.exec("BEGIN");
    createTables(tables, schemaMismatch(database).empty());
    // Lets go of every table before `loading` and of its rows before row `loaded`.
    std::size_t table = 0, letGo = 0; // what is let go of already
    const auto letGoOfRows = [&](std::size_t loading, std::size_t loaded) {
        if (encoding.valid()) {
            if (loading < tables.size() &&
                encoding.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
                return;
            keepEncoded(encoding.get(), *file);
        }
        for (; table < loading; ++table, letGo = 0)
            std::vector<jet::Row>().swap(tables[table]->rows);
        for (; table < tables.size() && letGo < loaded; ++letGo)
            jet::Row().swap(tables[table]->rows[letGo]);
    };
    std::vector<std::string> names;
    for (std::size_t t = 0; t < tables.size(); ++t) {
        const jet::Table& loading = *tables[t];
        std::vector<std::int64_t>& rowids = m_rowids.emplace_back(loading.rows.size());
        for (std::size_t r = 0; r < rowids.size(); ++r)
            rowids[r] = sql::loadedRowId(r);
        const std::int32_t lastNumber = lastNumberInUse(loading);
        loadTable(loading, [&](std::size_t loaded) { letGoOfRows(t, loaded); });
        startCounter(loading, lastNumber);
        names.push_back(jet::toUtf8(loading.name));
    }
    letGoOfRows(tables.size(), 0); // waits for the encoding
    m_shape = std::move(database);
    m_shape.version = jet::Version::Jet4; // what a save writes
    std::ranges::move(made, std::back_inserter(m_shape.tables));
    m_db.exec("PRAGMA ignore_check_constraints = OFF");
    m_db.exec("COMMIT");
    m_written = std::make_unique<WrittenTables>(m_db.getHandle(), std::move(names));
}

void SqliteImage::createTables(const std::vector<jet::Table*>& tables, bool withIndexes)
{
    m_db.exec(sql::createCounters());
    for (const jet::Table* table : tables)
        m_db.exec(sql::createTable(*table));
    // Made before the rows go in: the rows come in file order, mostly by
    // date and number already, which grows an index faster than sorting
    // them all afterwards.
    if (withIndexes)
        for (const std::string& index : imageIndexes())
            m_db.exec(index);
}

// Inserts the rows in order under their row ids (sql::loadedRowId), several
// rows a statement; now and then `inserted` is told how many rows are in.
void SqliteImage::loadTable(const jet::Table& table, const std::function<void(std::size_t)>& inserted)
{
    const std::size_t width = table.columns.size();
    const std::size_t batch =
        std::max<std::size_t>(1, std::min<std::size_t>(kRowsPerInsert, 999 / (width + 1)));
    const std::string columns = sql::rowidAndColumns(table);
    const auto insertOf = [&](std::size_t rows) {
        std::string sql = "INSERT INTO " + sql::tableName(table) + " (" + columns + ") VALUES ";
        for (std::size_t r = 0; r < rows; ++r) {
            sql += r ? ", (?" : "(?";
            for (std::size_t i = 0; i < width; ++i)
                sql += ", ?";
            sql += ")";
        }
        return prepareRaw(m_db.getHandle(), sql);
    };
    const RawStatement full = insertOf(batch);
    // SQLite reads the bound texts in place: they must not move until the step.
    std::vector<std::string> texts(batch * (width + 1));
    for (std::size_t start = 0; start < table.rows.size(); start += batch) {
        const std::size_t rows = std::min(batch, table.rows.size() - start);
        const RawStatement rest = rows < batch ? insertOf(rows) : RawStatement();
        sqlite3_stmt* insert = rest ? rest.get() : full.get();
        for (std::size_t r = 0; r < rows; ++r) {
            const jet::Row& row = table.rows[start + r];
            if (row.size() != width)
                throw std::length_error("a row of table " + jet::toUtf8(table.name) +
                                        " has the wrong number of values");
            for (std::size_t i = 0; i < width; ++i)
                if (!sql::meetsCheck(table.columns[i], row[i]))
                    throw std::range_error("a value of column " + jet::toUtf8(table.columns[i].name) +
                                           " of table " + jet::toUtf8(table.name) + " does not fit it");
            const int first = static_cast<int>(r * (width + 1) + 1);
            sqlite3_bind_int64(insert, first, sql::loadedRowId(start + r));
            sql::bindJetRow(insert, row, texts, first + 1);
        }
        if (const int rc = sqlite3_step(insert); rc != SQLITE_DONE)
            throw SQLite::Exception(m_db.getHandle(), rc);
        sqlite3_reset(insert);
        if (start % kRowsBetweenCalls < batch)
            inserted(start + rows);
    }
}

// The counter starts past the file's last number and past every number in
// use, so that a file whose counter lags behind its rows still gets fresh ones.
std::int32_t SqliteImage::lastNumberInUse(const jet::Table& table)
{
    std::int32_t last = std::max(table.lastAutoNumber, 0);
    const jet::Column* column = sql::numberedColumn(table);
    if (!column)
        return last;
    const std::size_t at = static_cast<std::size_t>(column - table.columns.data());
    for (const jet::Row& row : table.rows)
        if (const auto* number = std::get_if<std::int32_t>(&row[at]))
            last = std::max(last, *number);
    return last;
}

void SqliteImage::startCounter(const jet::Table& table, std::int32_t last)
{
    const jet::Column* column = sql::numberedColumn(table);
    if (!column)
        return;
    SQLite::Statement insert(m_db,
                             "INSERT INTO " + sql::quoteIdentifier(sql::kCountersTable) + " VALUES (?, ?)");
    insert.bind(1, jet::toUtf8(table.name));
    insert.bind(2, last);
    insert.exec();
    m_db.exec(sql::createAutoNumberTriggers(table, *column));
}

const NextFile& SqliteImage::nextFile()
{
    m_next.reset();
    m_nextRowids.assign(m_shape.tables.size(), std::nullopt);
    m_nextFileTables = tablesToWrite();
    if (m_file && m_file->canChangeRows()) {
        // Tables made on first use join the file after its own, with all their rows.
        std::vector<jet::Table> added(m_shape.tables.begin() + static_cast<std::ptrdiff_t>(m_fileTables),
                                      m_shape.tables.begin() + static_cast<std::ptrdiff_t>(m_nextFileTables));
        m_next.emplace(*m_file, changes(), std::move(added));
        return *m_next;
    }
    jet::Database contents = dump(&m_nextRowids);
    m_next.emplace(std::move(contents));
    return *m_next;
}

std::vector<jet::TableChanges> SqliteImage::changes()
{
    std::vector<jet::TableChanges> result(m_nextFileTables);
    for (std::size_t i = 0; i < m_nextFileTables; ++i) {
        const jet::Table& shape = m_shape.tables[i];
        const std::vector<WrittenTables::RowWrite> writes = m_written->rowsWritten(i);
        const bool inFile = i < m_fileTables;
        if (!inFile || !writes.empty() || !m_written->rowsKnown(i) || m_written->deletedFrom(i)) {
            ChangedRows rows(m_db.getHandle(), shape, m_rowids[i]);
            result[i] =
                inFile && m_written->rowsKnown(i) ? rows.read(writes, patchableColumns(i)) : rows.readAll();
            m_nextRowids[i] = std::move(rows.rowids());
            m_columns.toFile(i, result[i], m_rowids[i], *m_nextRowids[i]);
        }
        result[i].lastAutoNumber = m_columns.fileCounter(i, lastAutoNumber(shape));
    }
    return result;
}

// The columns UPDATEs set in a table, when each is of a fixed size and the
// table is kept as the file holds it: the rows they updated keep their size,
// so they are patched in the file. None otherwise.
std::vector<std::size_t> SqliteImage::patchableColumns(std::size_t table) const
{
    if (!m_columns.keepsTableAsItIs(table))
        return {};
    const std::vector<jet::Column>& columns = m_shape.tables[table].columns;
    std::vector<std::size_t> patchable;
    // SQLite names each column as the table declares it.
    for (const std::string& name : m_written->columnsUpdated(table)) {
        const std::optional<std::size_t> column = m_shape.tables[table].columnIndex(jet::fromUtf8(name));
        if (!column || !jet::isFixedSize(columns[*column].type))
            return {};
        patchable.push_back(*column);
    }
    return patchable;
}

jet::Database SqliteImage::dump(std::vector<std::optional<std::vector<std::int64_t>>>* rowids) const
{
    jet::Database result;
    result.version = m_shape.version;
    result.password = m_shape.password;
    result.creationDate = m_shape.creationDate;
    result.codePage = m_shape.codePage;
    const std::size_t count = tablesToWrite();
    for (std::size_t i = 0; i < count; ++i) {
        std::vector<std::int64_t> ids;
        result.tables.push_back(dumpTable(m_shape.tables[i], &ids));
        m_columns.toFile(i, result.tables.back(), ids);
        if (rowids)
            (*rowids)[i] = std::move(ids);
    }
    return result;
}

std::size_t SqliteImage::tablesToWrite() const
{
    for (std::size_t i = m_fileTables; i < m_shape.tables.size(); ++i) {
        const RawStatement any = prepareRaw(m_db.getHandle(), "SELECT EXISTS (SELECT 1 FROM " +
                                                                  sql::tableName(m_shape.tables[i]) + ")");
        if (sqlite3_step(any.get()) != SQLITE_ROW)
            throw SQLite::Exception(m_db.getHandle(), sqlite3_errcode(m_db.getHandle()));
        if (sqlite3_column_int(any.get(), 0) != 0)
            return m_shape.tables.size();
    }
    return m_fileTables;
}

jet::Table SqliteImage::dumpTable(const jet::Table& shape, std::vector<std::int64_t>* rowids) const
{
    jet::Table table;
    table.name = shape.name;
    table.columns = shape.columns;
    const RawStatement select =
        prepareRaw(m_db.getHandle(), "SELECT rowid, * FROM " + sql::tableName(table) + " ORDER BY rowid");
    const int width = static_cast<int>(table.columns.size());
    int rc = SQLITE_OK;
    while ((rc = sqlite3_step(select.get())) == SQLITE_ROW) {
        if (rowids)
            rowids->push_back(sqlite3_column_int64(select.get(), 0));
        jet::Row& row = table.rows.emplace_back();
        row.reserve(table.columns.size());
        for (int i = 0; i < width; ++i)
            row.push_back(
                sql::readJetValue(table.columns[static_cast<std::size_t>(i)].type, select.get(), i + 1));
    }
    if (rc != SQLITE_DONE)
        throw SQLite::Exception(m_db.getHandle(), rc);
    table.lastAutoNumber = lastAutoNumber(shape);
    return table;
}

std::int32_t SqliteImage::lastAutoNumber(const jet::Table& table) const
{
    if (!sql::numberedColumn(table))
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

std::optional<jet::FileImage> SqliteImage::commit()
{
    m_db.exec("COMMIT");
    std::optional<jet::FileImage> replaced;
    if (m_next) {
        jet::FileImage written = std::move(*m_next).takeFile();
        m_next.reset();
        replaced = std::exchange(m_file, std::move(written));
        m_fileTables = m_nextFileTables;
        for (std::size_t i = 0; i < m_nextRowids.size(); ++i)
            if (m_nextRowids[i])
                m_rowids[i] = std::move(*m_nextRowids[i]);
    } else if (m_written->anyWritten()) {
        m_file.reset(); // the contents moved on without a file: the next one is encoded whole
    }
    m_nextRowids.clear();
    m_written->clearMarks();
    return replaced;
}

void SqliteImage::rollback() noexcept
{
    if (!sqlite3_get_autocommit(m_db.getHandle()))
        sqlite3_exec(m_db.getHandle(), "ROLLBACK", nullptr, nullptr, nullptr);
    m_next.reset();
    m_nextRowids.clear();
    m_taking.reset();
    m_written->clearMarks();
}

long long SqliteImage::totalChanges() const
{
    return sqlite3_total_changes64(m_db.getHandle());
}

} // namespace store
