#pragma once

#include "Table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace jet {

// One row put in, replaced, patched or taken out, named by its place in the
// rows of the previous file: an insert goes before the row at `position` (at
// the end when `position` is the old row count), a replacement, patch or
// removal is that row itself.
struct RowChange
{
    enum class Kind
    {
        Insert,
        Replace,
        Remove,
        // The row as stored with new values of the table's patched columns;
        // its size stays, so only those bytes change.
        Patch,
    };

    std::size_t position = 0;
    Kind kind = Kind::Insert;
    // Insert and Replace: the row. Patch: the new values of the table's
    // patched columns, in their order; empty when they are the table's
    // shared patch.
    Row row;
};

// What became of a table's rows since the previous file, sorted by position
// (inserts at one position in the order they are to stand, before the
// replacement or removal of the row there), and its AutoNumber counter.
// When `replacesAll`, the previous rows are all gone and `rows` holds the
// new ones, inserts at position 0.
struct TableChanges
{
    std::vector<RowChange> rows;
    std::int32_t lastAutoNumber = 0;
    bool replacesAll = false;
    // The columns each Patch sets, every one of them of a fixed size.
    std::vector<std::size_t> patchedColumns;
    // The values of those columns for every Patch without its own: when
    // the rows were all set alike, half a million patches need not each
    // carry a copy.
    Row sharedPatch;
};

// The values a Patch sets, in the order of the patched columns.
inline const Row& patchValues(const TableChanges& changes, const RowChange& patch)
{
    return patch.row.empty() ? changes.sharedPatch : patch.row;
}

// The value a change gives `column`: from its row, or its patched value;
// none for a removal or a column a patch leaves alone.
inline const Value* newValue(const TableChanges& changes, const RowChange& change, std::size_t column)
{
    switch (change.kind) {
    case RowChange::Kind::Remove:
        return nullptr;
    case RowChange::Kind::Patch: {
        const auto& patched = changes.patchedColumns;
        const auto at = std::find(patched.begin(), patched.end(), column);
        return at == patched.end()
                   ? nullptr
                   : &patchValues(changes, change).at(static_cast<std::size_t>(at - patched.begin()));
    }
    default:
        return &change.row.at(column);
    }
}

} // namespace jet
