#pragma once

#include "PageSource.h"
#include "Table.h"
#include "TableDefinition.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jet {

// Turns the stored bytes of one row into values, one per column of the
// definition (in col_num order). Long values are fetched through the pages.
class RowDecoder
{
public:
    RowDecoder(const PageSource& pages, const TableDefinition& definition);

    Row decode(std::span<const std::uint8_t> row) const;

private:
    struct RowFrame;
    RowFrame frame(std::span<const std::uint8_t> row) const;
    Value fixedValue(const StoredColumn& c, const RowFrame& f) const;
    Value variableValue(const StoredColumn& c, const RowFrame& f) const;
    Value typedValue(const StoredColumn& c, std::span<const std::uint8_t> bytes) const;
    Bytes longValue(std::span<const std::uint8_t> header) const;

    const PageSource& m_pages;
    const TableDefinition& m_definition;
    bool m_hasVariableArea = false;
};

} // namespace jet
