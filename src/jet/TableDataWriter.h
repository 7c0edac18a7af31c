#pragma once

#include "LongValueWriter.h"
#include "RowEncoder.h"
#include "RowPacker.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jet::writer {

// Writes the rows of one table, in order, onto data pages owned by its
// definition page, and its long values onto LVAL pages per column.
class TableDataWriter
{
public:
    TableDataWriter(PageBuffer& file, const TableLayout& layout, std::uint32_t definitionPage);

    // `plans` holds RowEncoder::plan of each row, in order.
    void writeRows(std::span<const RowPlan> plans);
    // Writes the table's next row, of that plan.
    void writeRow(const Row& row, const RowPlan& plan);

    const std::vector<std::uint32_t>& dataPages() const { return m_rows.pages(); }
    const std::vector<std::uint32_t>& longValuePages(std::size_t ordinal) const
    {
        return m_longValues[ordinal].pages();
    }
    // The packer of the data pages, for rows written by another writer.
    RowPacker& rows() { return m_rows; }
    // Whether the last data page could take another row.
    bool lastPageHasRoom() const { return m_rows.hasRoomFor(m_layout.emptyRowBytes()); }

private:
    void storeLongValues(const Row& row, const RowPlan& plan);
    std::span<const std::uint8_t> storedBytes(const Value& value);

    const TableLayout& m_layout;
    RowEncoder m_encoder;
    RowPacker m_rows;
    std::vector<LongValueWriter> m_longValues;
    std::vector<LongValueRef> m_refs;
    std::vector<std::uint8_t> m_scratch;
};

} // namespace jet::writer
