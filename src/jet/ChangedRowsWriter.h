#pragma once

#include "RowEncoder.h"
#include "RowPacker.h"
#include "TableChanges.h"

#include <cstdint>
#include <span>

namespace jet::writer {

// Writes the rows of one table for the next file from the rows of the
// previous one and the changes since: rows left alone are copied as stored,
// a whole page at a time where they start a new page and none of its rows
// changed but by patches, since packing them again would give the same page;
// changed and new rows are encoded, patched rows copied with their patched
// values. The previous pages must be this writer's own, packed
// as RowPacker packs, without long values stored apart.
class ChangedRowsWriter
{
public:
    ChangedRowsWriter(RowPacker& packer, const RowEncoder& encoder,
                      std::span<const std::uint8_t> previousFile,
                      std::span<const std::uint32_t> previousPages);

    // `plans` holds RowEncoder::plan of each change's row (unused for
    // removals and patches), checked, as are the patches.
    void write(const TableChanges& changes, std::span<const RowPlan> plans);

private:
    const std::uint8_t* page() const;
    std::size_t rowsOnPage() const;
    std::span<const std::uint8_t> storedRow() const;
    std::span<std::uint8_t> copyStoredRow(); // packed next, as stored
    void nextRow();
    void nextPage(); // skips pages without rows
    bool adoptsPage(const TableChanges& changes, std::size_t& nextChange);

    RowPacker& m_packer;
    const RowEncoder& m_encoder;
    std::span<const std::uint8_t> m_previousFile;
    std::span<const std::uint32_t> m_previousPages;
    // The previous row next in line: its page, its place there and in the table.
    std::size_t m_page = 0;
    std::size_t m_row = 0;
    std::size_t m_position = 0;
};

} // namespace jet::writer
