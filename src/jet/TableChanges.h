#pragma once

#include "Table.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jet {

// One row put in, replaced or taken out, named by its place in the rows of
// the previous file: an insert goes before the row at `position` (at the
// end when `position` is the old row count), a replacement or removal is
// that row itself.
struct RowChange
{
    enum class Kind
    {
        Insert,
        Replace,
        Remove,
    };

    std::size_t position = 0;
    Kind kind = Kind::Insert;
    Row row; // Insert and Replace
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
};

} // namespace jet
