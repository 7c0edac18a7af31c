#pragma once

#include "WrittenTables.h"
#include "jet/Table.h"
#include "jet/TableChanges.h"

#include <cstdint>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace store {

// One table's changes since the last file, read from SQLite: the rows of
// that file are known by their row ids (in file order), and the row ids a
// transaction wrote are looked up again, so each becomes an insert, a
// replacement, a patch or a removal at its place in the file.
class ChangedRows
{
public:
    // `table` gives the name and columns; `kept` the row ids of the last file's rows.
    ChangedRows(sqlite3* db, const jet::Table& table, const std::vector<std::int64_t>& kept);

    // The changes for these writes (ascending, each row id once). A row of
    // the last file that was only updated, when every column updated is one
    // of `patchable` (columns of a fixed size), is a patch: only those
    // columns are read, from the first such row alone when `alike` says that
    // they hold the same values in all of them. Every row taken as it is now when the count of rows
    // does not add up, as after a DELETE without WHERE, which SQLite may
    // carry out by emptying the table at once without naming the rows.
    jet::TableChanges read(const std::vector<WrittenTables::RowWrite>& writes,
                           const std::vector<std::size_t>& patchable = {}, bool alike = false);
    // Every row taken as it is now, in place of the kept ones.
    jet::TableChanges readAll();
    // The row ids of the rows after the changes of the last read, in file order.
    std::vector<std::int64_t>& rowids() { return m_rowids; }

private:
    // What a write is read as.
    enum class Reading
    {
        Nothing, // deleted
        Row,
        Patch,
    };

    class Cursor;
    std::int64_t countRows() const;
    jet::Row readRow(sqlite3_stmt* select, int firstColumn) const;

    sqlite3* m_db;
    const jet::Table& m_table;
    const std::vector<std::int64_t>& m_kept;
    std::vector<std::int64_t> m_rowids;
};

} // namespace store
