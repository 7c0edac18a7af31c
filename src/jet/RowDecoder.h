#pragma once

#include "PageSource.h"
#include "Table.h"
#include "TableDefinition.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jet {

// Turns the stored bytes of one row into values, one per column of the
// definition (in col_num order). Long values are fetched through the pages;
// their stated length must match the bytes found exactly. Every long-value
// row belongs to one value: with `claimedLongValueRows` (one bit per row
// pointer, shared by all tables of a file) a row met a second time is damage,
// which stops a chain that loops and values that share their data.
class RowDecoder
{
public:
    RowDecoder(const PageSource& pages, const TableDefinition& definition,
               std::vector<bool>* claimedLongValueRows = nullptr);

    Row decode(std::span<const std::uint8_t> row) const;

private:
    struct RowFrame;
    RowFrame frame(std::span<const std::uint8_t> row) const;
    Value fixedValue(const StoredColumn& c, const RowFrame& f) const;
    Value variableValue(const StoredColumn& c, const RowFrame& f) const;
    Value typedValue(const StoredColumn& c, std::span<const std::uint8_t> bytes) const;
    Bytes longValue(std::span<const std::uint8_t> header) const;
    std::span<const std::uint8_t> claim(std::uint32_t rowPointer) const;

    const PageSource& m_pages;
    const TableDefinition& m_definition;
    std::vector<bool>* m_claimed;
    bool m_hasVariableArea = false;
};

} // namespace jet
