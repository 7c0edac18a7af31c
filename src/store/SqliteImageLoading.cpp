#include "SqliteImage.h"

#include "JetSqlValues.h"
#include "RawStatement.h"
#include "Reencoding.h"
#include "Schema.h"
#include "SqlFunctions.h"
#include "SqlSchema.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <functional>
#include <future>
#include <iterator>
#include <limits>
#include <sqlite3.h>
#include <stdexcept>

#ifdef __GLIBC__
#include <malloc.h>
#endif

// Loading a decoded file into SQLite.

namespace store {

namespace {

constexpr std::size_t kRowsPerInsert = 50;

// The decoded rows let go of leave holes between SQLite's pages, which the
// allocator keeps for itself: about 200 MB at 1,000,000 operations. Handing
// them back to the system costs some tens of milliseconds there.
void giveBackFreedMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace

void SqliteImage::keepEncoded(std::optional<jet::FileImage> encoded, std::vector<std::uint8_t>& file)
{
    if (!encoded)
        return;
    m_file.emplace(std::move(*encoded));
    std::vector<std::uint8_t>().swap(file); // one copy of the file is held, not two
}

SqliteImage::Incoming SqliteImage::allIn(const jet::Database& database)
{
    Incoming incoming;
    incoming.rowsIn = [&database](std::size_t table, std::size_t) {
        return database.tables[table].rows.size();
    };
    return incoming;
}

void SqliteImage::load(jet::Database& database)
{
    load(database, allIn(database));
}

// The rows of each table are let go of as they go into SQLite, so that
// the decoded rows and SQLite's copy of them are not all held at once; but
// none before the encoding is done with their table.
void SqliteImage::load(jet::Database& database, const Incoming& incoming)
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
    // Lets go of every table before `loading` and of its rows before row
    // `loaded`, as far as the encoding is done with them.
    std::size_t table = 0, letGo = 0; // what is let go of already
    bool encoded = !incoming.encoding;
    const auto rowsDone = [&](std::size_t t) {
        return incoming.encoding ? incoming.encoding->rowsDone(t) : std::numeric_limits<std::size_t>::max();
    };
    const auto keepOnceEncoded = [&] {
        if (!encoded && incoming.encoding->done()) {
            keepEncoded(incoming.encoding->take(), *incoming.file);
            encoded = true;
        }
    };
    const auto letGoOfRows = [&](std::size_t loading, std::size_t loaded) {
        for (; table < loading && rowsDone(table) == std::numeric_limits<std::size_t>::max();
             ++table, letGo = 0)
            std::vector<jet::Row>().swap(tables[table]->rows);
        if (table == loading)
            for (const std::size_t done = std::min(loaded, rowsDone(table)); letGo < done; ++letGo)
                jet::Row().swap(tables[table]->rows[letGo]);
    };
    std::vector<std::string> names;
    for (std::size_t t = 0; t < tables.size(); ++t) {
        const jet::Table& loading = *tables[t];
        const bool counted = std::ranges::find(m_countedOnly, loading.name) != m_countedOnly.end();
        const auto rowsIn = [&](std::size_t count) {
            return t < m_fileTables ? incoming.rowsIn(t, count) : loading.rows.size();
        };
        // A file still being decoded keeps its bytes until it is loaded: a
        // loading that fails leaves them to be judged whole.
        const auto inserted = [&](std::size_t rows) {
            if (incoming.letGo)
                return incoming.letGo(t, rows);
            keepOnceEncoded();
            letGoOfRows(t, rows);
        };
        const LoadedTable loaded =
            loadTable(loading, rowsIn, inserted, !counted, incoming.rowsChecked && t < m_fileTables);
        m_countedRows += counted ? loaded.rows : 0;
        std::vector<std::int64_t>& rowids = m_rowids.emplace_back(loaded.rows);
        for (std::size_t r = 0; r < rowids.size(); ++r)
            rowids[r] = sql::loadedRowId(r);
        startCounter(loading, loaded.lastNumber);
        names.push_back(jet::toUtf8(loading.name));
    }
    if (incoming.finish)
        incoming.finish(); // every table decoded and encoded
    letGoOfRows(tables.size(), 0);
    giveBackFreedMemory();
    m_shape = std::move(database);
    m_shape.version = jet::Version::Jet4; // what a save writes
    std::ranges::move(made, std::back_inserter(m_shape.tables));
    m_db.exec("PRAGMA ignore_check_constraints = OFF");
    m_db.exec("COMMIT");
    m_written = std::make_unique<WrittenTables>(m_db.getHandle(), std::move(names));
    keepOnceEncoded();
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

void SqliteImage::checkRow(const jet::Table& table, const jet::Row& row)
{
    if (row.size() != table.columns.size())
        throw std::length_error("a row of table " + jet::toUtf8(table.name) +
                                " has the wrong number of values");
    for (std::size_t i = 0; i < row.size(); ++i)
        if (!sql::meetsCheck(table.columns[i], row[i]))
            throw std::range_error("a value of column " + jet::toUtf8(table.columns[i].name) + " of table " +
                                   jet::toUtf8(table.name) + " does not fit it");
}

// Inserts the rows in order under their row ids (sql::loadedRowId), several
// rows a statement, as `rowsIn` has them; now and then `inserted` is told
// how many rows are in. The counter starts past the file's last number and
// past every number in use, so that a file whose counter lags behind its
// rows still gets fresh ones.
SqliteImage::LoadedTable SqliteImage::loadTable(const jet::Table& table,
                                                const std::function<std::size_t(std::size_t)>& rowsIn,
                                                const std::function<void(std::size_t)>& inserted, bool keep,
                                                bool checked)
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
    const jet::Column* numbered = sql::numberedColumn(table);
    const std::size_t numberAt = numbered ? static_cast<std::size_t>(numbered - table.columns.data()) : 0;
    LoadedTable loaded{0, std::max(table.lastAutoNumber, 0)};
    const RawStatement full = insertOf(batch);
    // SQLite reads the bound texts in place: they must not move until the step.
    std::vector<std::string> texts(batch * (width + 1));
    for (std::size_t start = 0;; start += batch) {
        if (loaded.rows < start + batch)
            loaded.rows = rowsIn(start + batch); // fewer only once the table is whole
        if (start >= loaded.rows)
            break;
        const std::size_t rows = std::min(batch, loaded.rows - start);
        const RawStatement rest = rows < batch ? insertOf(rows) : RawStatement();
        sqlite3_stmt* insert = rest ? rest.get() : full.get();
        for (std::size_t r = 0; r < rows; ++r) {
            const jet::Row& row = table.rows[start + r];
            if (!checked)
                checkRow(table, row);
            if (numbered)
                if (const auto* number = std::get_if<std::int32_t>(&row[numberAt]))
                    loaded.lastNumber = std::max(loaded.lastNumber, *number);
            if (!keep) {
                sql::checkJetRow(row);
                continue;
            }
            const int first = static_cast<int>(r * (width + 1) + 1);
            sqlite3_bind_int64(insert, first, sql::loadedRowId(start + r));
            sql::bindJetRow(insert, row, texts, first + 1);
        }
        if (keep) {
            if (const int rc = sqlite3_step(insert); rc != SQLITE_DONE)
                throw SQLite::Exception(m_db.getHandle(), rc);
            sqlite3_reset(insert);
        }
        if (start % kRowsBetweenCalls < batch)
            inserted(start + rows);
    }
    return loaded;
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

} // namespace store
