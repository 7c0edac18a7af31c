#include "SqliteImage.h"

#include "ChangedRows.h"
#include "JetSqlValues.h"
#include "RawStatement.h"
#include "Reencoding.h"
#include "SqlSchema.h"
#include "jet/Error.h"
#include "jet/ReadAhead.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <future>
#include <sqlite3.h>
#include <stdexcept>
#include <utility>

namespace store {

namespace {

// Past this many different statement texts the cache starts afresh.
constexpr std::size_t kMaxCachedStatements = 256;
const int kOpenFlags = SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX;

} // namespace

StatementScope::~StatementScope()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

SqliteImage::SqliteImage(jet::Database database) : m_columns(database), m_db(":memory:", kOpenFlags)
{
    load(database);
}

SqliteImage::SqliteImage(jet::Database database, std::vector<std::u16string> countedOnly)
    : m_columns(database), m_db(":memory:", kOpenFlags)
{
    m_countedOnly = std::move(countedOnly);
    load(database);
}

SqliteImage::SqliteImage(jet::Database database, std::vector<std::uint8_t>& file)
    : m_columns(database), m_db(":memory:", kOpenFlags)
{
    // Loading turns values the file keeps in other kinds into the store's
    // own, in place: such a file is encoded first. Any other is encoded on a
    // second thread while its rows go into SQLite.
    if (!m_columns.keepsFileAsItIs()) {
        Reencoding encoding(database, file);
        encoding.allIn();
        keepEncoded(encoding.take(), file);
        load(database);
        return;
    }
    Reencoding encoding(database, file);
    std::future<void> encoded = std::async(std::launch::async, [&] { encoding.allIn(); });
    Incoming incoming = allIn(database);
    incoming.encoding = &encoding;
    incoming.file = &file;
    incoming.finish = [&] { encoded.get(); };
    load(database, incoming);
}

SqliteImage::SqliteImage(jet::ReadAhead& reading, std::vector<std::uint8_t>& file)
    : m_columns(reading.database()), m_db(":memory:", kOpenFlags)
{
    jet::Database& database = reading.database();
    if (!m_columns.keepsFileAsItIs())
        throw std::logic_error("a file kept in other kinds is loaded once it is decoded");
    Reencoding encoding(database, file);
    // The decoding thread checks and encodes the rows as they come in; it
    // must be gone before the encoding is, also when loading fails.
    std::size_t checked = 0; // of the table coming in, on the decoding thread
    const auto checkAndEncode = [&](std::size_t table, std::size_t rows, bool whole) {
        for (; checked < rows; ++checked)
            checkRow(database.tables[table], database.tables[table].rows[checked]);
        checked = whole ? 0 : checked;
        encoding.rowsIn(table, rows, whole);
    };
    const jet::ReadAhead::Running decoding = reading.start(checkAndEncode, kRowsDecodedAhead);
    Incoming incoming;
    incoming.rowsIn = [&](std::size_t table, std::size_t count) { return reading.rowsDecoded(table, count); };
    incoming.encoding = &encoding;
    incoming.file = &file;
    incoming.letGo = [&](std::size_t table, std::size_t rows) { reading.letGo(table, rows); };
    incoming.rowsChecked = true;
    incoming.finish = [&] { reading.finish(); };
    load(database, incoming);
}

bool SqliteImage::loadsWhileDecoding(const jet::Database& tables)
{
    return ColumnMapping(tables).keepsFileAsItIs();
}

SqliteImage::~SqliteImage()
{
    m_statements.clear();
    m_written.reset();
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
            result[i] = inFile && m_written->rowsKnown(i)
                            ? rows.read(writes, patchableColumns(i), m_written->updatedAlike(i))
                            : rows.readAll();
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

sqlite3_stmt* SqliteImage::statement(const std::string& sql)
{
    auto found = m_statements.find(sql);
    if (found == m_statements.end()) {
        if (m_statements.size() >= kMaxCachedStatements)
            m_statements.clear();
        m_written->startCollecting();
        RawStatement prepared = prepareRaw(m_db.getHandle(), sql);
        found = m_statements.emplace(sql, CachedStatement{std::move(prepared), m_written->collected()}).first;
    }
    m_written->mark(found->second.writes);
    return found->second.statement.get();
}

bool SqliteImage::updateAlike(sqlite3_stmt* update)
{
    m_written->startAlike();
    // A statement that fails is not ended: the rows it named stay among the
    // writes, so its tables are not taken as written alike.
    const bool gaveRow = stepRow(update);
    m_written->endAlike(!gaveRow, sqlite3_changes64(m_db.getHandle()));
    return gaveRow;
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
