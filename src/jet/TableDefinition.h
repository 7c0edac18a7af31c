#pragma once

#include "Column.h"
#include "PageSource.h"

#include <cstdint>
#include <string>
#include <vector>

namespace jet {

// A column as a table definition stores it.
struct StoredColumn
{
    Column column;
    std::uint8_t typeCode = 0;
    std::uint16_t number = 0;   // col_num: its null-mask bit
    std::uint16_t varIndex = 0; // place in the row's variable-offset table
    std::uint16_t fixedOffset = 0;
    std::uint8_t flags = 0;
    int fixedOrdinal = -1; // place among the fixed columns in col_num order
    bool fixed() const { return flags & 0x01; }
};

struct TableDefinition
{
    std::uint32_t page = 0; // first TDEF page: the owner mark of its data pages
    std::uint32_t rowCount = 0;
    std::int32_t lastAutoNumber = 0;
    std::uint16_t maxCols = 0;
    std::uint16_t varColumnCount = 0;
    std::uint32_t ownedMap = 0;        // row pointer
    std::vector<StoredColumn> columns; // sorted by col_num
};

// Reads the definition starting at `page` and its continuation pages.
TableDefinition readTableDefinition(const PageSource& pages, std::uint32_t page);

} // namespace jet
