#pragma once

#include "ColumnValues.h"
#include "jet/Database.h"
#include "jet/TableChanges.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace store {

// How the columns of a data file are kept in the store, and back. The store
// keeps every amount as Currency units and every date as a date, so that its
// statements and money rules see one kind per column whatever kind the file
// chose (ColumnKinds.h); a file's Double amounts and text dates are turned
// into those when the file is loaded and back into the file's own kind, size
// and date style when rows are saved, so the file's layout never changes.
// Operation numbers are handed out by the store also where the file's column
// is no autonumber. Columns and tables the program does not know are kept
// exactly as they are.
class ColumnMapping
{
public:
    ColumnMapping() = default;
    // For a file's tables, with the rows that show how its text dates are written.
    explicit ColumnMapping(const jet::Database& file);

    // The file's tables, columns and values as the store keeps them; row r
    // of a table is to get the row id sql::loadedRowId(r) in the store. A value whose
    // exact form the store would not write back (a Double with binary noise,
    // a date written "5.3.2026") is remembered, so that a row left alone is
    // written back exactly as it was. Throws std::range_error for a value
    // that cannot be kept (an amount outside the Currency range, a text that
    // is no date).
    void toStore(jet::Database& contents);
    // Table number `table` as the store holds it, its rows under `rowids`,
    // back in the file's columns and values. Throws jet::Error (a value that
    // does not fit) naming the table, column and row.
    void toFile(std::size_t table, jet::Table& contents, const std::vector<std::int64_t>& rowids) const;
    // The same for the changes since the last file, whose rows had the row
    // ids `kept`; `after` are the row ids once the changes are made. A table
    // the store keeps in other kinds has no patched rows.
    void toFile(std::size_t table, jet::TableChanges& changes, const std::vector<std::int64_t>& kept,
                const std::vector<std::int64_t>& after) const;
    // True when every table is kept as the file holds it: values, kinds and numbers alike.
    bool keepsFileAsItIs() const;
    // The same for table number `table`.
    bool keepsTableAsItIs(std::size_t table) const { return table >= m_tables.size() || !m_tables[table]; }
    // The file's counter of table number `table` when the store's is `counter`:
    // a file whose operation numbers are no autonumber keeps its own.
    std::int32_t fileCounter(std::size_t table, std::int32_t counter) const;

private:
    struct Converted
    {
        std::size_t at = 0;
        jet::Column file;
        values::DateStyle style;
        // Values as the file holds them where the store would write them
        // otherwise, by row id, ascending.
        std::vector<std::pair<std::int64_t, jet::Value>> originals;
    };
    struct TableMapping
    {
        jet::Table file; // name and columns, no rows
        std::vector<Converted> columns;
        // A column the store numbers although the file's is no autonumber.
        std::optional<std::size_t> numbered;
    };

    void rowToFile(const TableMapping& table, jet::Row& row, std::int64_t rowid, std::size_t position) const;

    std::vector<std::optional<TableMapping>> m_tables; // none where a table is kept as it is
};

} // namespace store
