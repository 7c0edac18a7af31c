#pragma once

#include "ColumnMapping.h"
#include "NextFile.h"
#include "RawStatement.h"
#include "WrittenTables.h"
#include "jet/Database.h"
#include "jet/FileImage.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace jet {
class ReadAhead;
}

namespace store {

class Reencoding;

// The data file's tables as an in-memory SQLite database: one STRICT table
// per Jet table, rows in file order (rowid), autonumbers handed out by
// triggers from a counter that never goes back; amounts and dates in the
// store's own kinds whatever kinds the file keeps them in. It also keeps the last file
// it read or wrote, when that file is known to decode to what SQLite held
// then, so that the next file is written from it: only rows a transaction
// wrote are read back from SQLite and encoded. The tables made on first use
// (Schema.h) that the file lacks are there too, empty; they go into the
// file, all together, with the first row any of them gets.
class SqliteImage
{
public:
    // Throws std::exception for a value the store cannot keep (a date outside
    // the years 100 to 9999, a row of the wrong width). Contents loaded this
    // way are written whole by their first save.
    explicit SqliteImage(jet::Database database);
    // The contents of `file`, kept as the last file when it is exactly the
    // file this program's writer makes of them; `file` is then emptied, so
    // that one copy of the file is held, not two. Otherwise it is left alone.
    SqliteImage(jet::Database database, std::vector<std::uint8_t>& file);
    // The same for the file `reading` decodes, loaded while it is decoded;
    // `file` is emptied only once all is loaded. Throws what stops decoding,
    // and std::logic_error unless loadsWhileDecoding() its tables.
    SqliteImage(jet::ReadAhead& reading, std::vector<std::uint8_t>& file);
    // Whether a file of these tables (their rows not needed) is kept as it
    // is, so that its rows can go into SQLite while it is still decoded.
    static bool loadsWhileDecoding(const jet::Database& tables);
    // Contents to look at: the rows of the tables named in `countedOnly` are
    // checked as loading checks them and counted, but not loaded.
    SqliteImage(jet::Database database, std::vector<std::u16string> countedOnly);
    ~SqliteImage();
    // The rows of the tables only counted.
    std::size_t countedRows() const { return m_countedRows; }

    // The current contents as the next data file: the loaded file's
    // password, tables and columns, the rows in order and the autonumber
    // counters. Valid until commit() or rollback(). Throws jet::Error for a
    // value that cannot be stored, SQLite::Exception for an engine error.
    const NextFile& nextFile();
    // Every table the next file would hold, read back from SQLite; with the
    // row ids of each table's rows, in file order, when asked for.
    jet::Database dump(std::vector<std::optional<std::vector<std::int64_t>>>* rowids = nullptr) const;
    // The last file, known to decode to what SQLite held when it was read or
    // written; null when there is none.
    const jet::FileImage* lastFile() const { return m_file ? &*m_file : nullptr; }

    // A prepared statement for `sql`, reused from earlier calls; asking for
    // it counts as running it. Use it to the end before asking for another
    // one. Throws SQLite::Exception.
    sqlite3_stmt* statement(const std::string& sql);
    // Runs a bound UPDATE from statement() that sets the same values in every
    // row it updates: its SET takes only bound values. The next file then
    // takes those values from one of the rows instead of reading each.
    // Steps it once, as stepRow() does: true when it gave a row. Throws
    // SQLite::Exception.
    bool updateAlike(sqlite3_stmt* update);

    // Takes the rows of `file` in place of those of the last file, in a
    // transaction of its own that finishTaking() commits and rollback()
    // abandons: only the rows the two files hold differently are written.
    // False, with nothing changed, unless `file` is, byte for byte, the file
    // this writer makes of the last one with those rows changed, its tables
    // kept as the store keeps them, and each row put in finds a row id
    // between those of its neighbours.
    bool beginTaking(std::span<const std::uint8_t> file);
    // Commits what beginTaking() wrote: `file` is now the last file.
    void finishTaking();

    void begin();
    // Commits; the file of nextFile(), if asked for, is now the last file,
    // and the one it replaced is handed back.
    std::optional<jet::FileImage> commit();
    // Rolls back.
    void rollback() noexcept;
    // Grows with every row written; tells whether a transaction changed anything.
    long long totalChanges() const;

private:
    struct CachedStatement
    {
        RawStatement statement;
        WrittenTables::Writes writes;
    };

    static constexpr std::size_t kRowsBetweenCalls = 20000; // of loadTable's `inserted`
    // How far decoding may run ahead of the rows let go of: rows decoded on
    // the decoding thread are freed into that thread's heap, which SQLite's
    // pages cannot reuse, so few are kept. Rows are let go of only now and
    // then: decoding must not wait for a loading that waits for it.
    static constexpr std::size_t kRowsDecodedAhead = 100'000;
    static_assert(kRowsDecodedAhead > 2 * kRowsBetweenCalls);

    // How the rows of a file come in while it is loaded.
    struct Incoming
    {
        // Waits until `count` rows of a table are in, or all are; gives how many are.
        std::function<std::size_t(std::size_t table, std::size_t count)> rowsIn;
        Reencoding* encoding = nullptr; // of `file`, beside the loading
        std::vector<std::uint8_t>* file = nullptr;
        // Lets go, as far as the encoding is done with them, of the rows of a
        // table before a row and of every earlier table's; without it, the
        // loading lets go of them.
        std::function<void(std::size_t table, std::size_t rows)> letGo;
        std::function<void()> finish; // waits for the decoding and the encoding to end
        // The file's rows are checked with checkRow() as they come in: a
        // row that fails stops the loading before it ends.
        bool rowsChecked = false;
    };
    struct LoadedTable
    {
        std::size_t rows = 0;
        std::int32_t lastNumber = 0; // of the counter
    };

    // Rows decoded whole.
    static Incoming allIn(const jet::Database& database);
    void load(jet::Database& database);
    void load(jet::Database& database, const Incoming& incoming);
    void keepEncoded(std::optional<jet::FileImage> encoded, std::vector<std::uint8_t>& file);
    void createTables(const std::vector<jet::Table*>& tables, bool withIndexes);
    // Throws std::exception for a row the store cannot keep in `table`.
    static void checkRow(const jet::Table& table, const jet::Row& row);
    // Without `keep`, the rows are checked as they would be, but not inserted;
    // `checked` rows are not checked again.
    LoadedTable loadTable(const jet::Table& table, const std::function<std::size_t(std::size_t)>& rowsIn,
                          const std::function<void(std::size_t)>& inserted, bool keep, bool checked);
    void startCounter(const jet::Table& table, std::int32_t last);
    jet::Table dumpTable(const jet::Table& shape, std::vector<std::int64_t>* rowids = nullptr) const;
    std::int32_t lastAutoNumber(const jet::Table& table) const;
    std::vector<jet::TableChanges> changes();
    // Writes one table's changes since the last file into SQLite and gives
    // the row ids of its rows afterwards, in file order. Throws
    // std::exception, SQLite::Exception included, when it cannot.
    std::vector<std::int64_t> writeChanges(std::size_t table, const jet::TableChanges& changes);
    std::vector<std::size_t> patchableColumns(std::size_t table) const;
    // How many of the first tables the next file holds: those the file has,
    // and all the others once one of them has a row.
    std::size_t tablesToWrite() const;

    jet::Database m_shape; // the tables without rows, as the store keeps them
    // The first tables of m_shape, those the file has; the others are made on first use.
    std::size_t m_fileTables = 0;
    std::size_t m_nextFileTables = 0; // of nextFile()
    std::vector<std::u16string> m_countedOnly;
    std::size_t m_countedRows = 0;
    ColumnMapping m_columns;
    // The last file, and the row ids of its rows per table in file order;
    // none when it is not known to match SQLite's committed contents.
    std::optional<jet::FileImage> m_file;
    std::vector<std::vector<std::int64_t>> m_rowids;
    std::optional<NextFile> m_next;
    // What beginTaking() wrote, until it is committed or rolled back.
    struct Taking
    {
        jet::FileImage file;
        std::vector<std::vector<std::int64_t>> rowids;
    };
    std::optional<Taking> m_taking;
    std::vector<std::optional<std::vector<std::int64_t>>> m_nextRowids; // for the tables that changed
    SQLite::Database m_db;
    std::unique_ptr<WrittenTables> m_written;
    std::unordered_map<std::string, CachedStatement> m_statements;
};

// Resets a statement and its bindings when leaving the scope, also after an error.
class StatementScope
{
public:
    explicit StatementScope(sqlite3_stmt* statement) : m_statement(statement) {}
    ~StatementScope();
    StatementScope(const StatementScope&) = delete;
    StatementScope& operator=(const StatementScope&) = delete;

private:
    sqlite3_stmt* m_statement;
};

} // namespace store
