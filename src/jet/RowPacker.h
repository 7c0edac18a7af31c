#pragma once

#include "PageBuffer.h"

#include <cstdint>
#include <vector>

namespace jet::writer {

// Puts rows of one owner (a table's TDEF page, or the LVAL mark) onto data
// pages in the order they come, opening a new page at the end of the file
// when the current one is full. Rows are packed downwards from the page end
// with no gaps, and the page header (row count, free space) is kept exact
// after every row.
class RowPacker
{
public:
    RowPacker(PageBuffer& file, std::uint32_t owner);

    struct Placed
    {
        std::uint8_t* bytes; // `size` zero bytes, valid until the file grows again
        std::uint32_t pointer;
    };
    // `size` is at most the room of an empty page (kPageSize - header - 2).
    Placed add(std::size_t size);

    // Appends a copy of `page`, a full data page of this owner's rows as
    // add() packs them, and goes on filling it. The caller makes sure the
    // rows would have filled a new page exactly so. Gives the copy, valid
    // until the file grows again.
    std::uint8_t* adoptPage(const std::uint8_t* page);

    // The pages opened so far, ascending.
    const std::vector<std::uint32_t>& pages() const { return m_pages; }
    // Whether the last page could still take a row of `size` bytes.
    bool hasRoomFor(std::size_t size) const;

private:
    std::uint8_t* openPage();

    PageBuffer& m_file;
    std::uint32_t m_owner;
    std::vector<std::uint32_t> m_pages;
    std::size_t m_rows = 0;
    std::size_t m_lowest = kPageSize; // start of the lowest row on the current page
};

} // namespace jet::writer
