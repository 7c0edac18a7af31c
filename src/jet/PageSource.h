#pragma once

#include "Error.h"
#include "Header.h"
#include "Layout.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace jet {

// One stored row of a data page with the flag bits of its offset entry.
struct RowSlot
{
    std::uint16_t flags = 0; // 0x4000 overflow stub, 0x8000 moved data, both: deleted
    std::span<const std::uint8_t> bytes;

    bool isDeleted() const { return (flags & 0xC000) == 0xC000; }
};

// Page access for a decoded file: bounds-checked pages (decoded when the file
// is encoded) and the rows of data pages. Every failure is Error(DamagedFile).
class PageSource
{
public:
    PageSource(std::span<const std::uint8_t> file, const Header& header);

    const Layout& layout() const { return m_layout; }
    const Header& header() const { return m_header; }
    std::uint32_t pageCount() const { return m_pageCount; }

    std::span<const std::uint8_t> page(std::uint32_t number) const;

    // Row entries of a data page (type 0x01).
    int rowCount(std::span<const std::uint8_t> dataPage) const;
    RowSlot row(std::span<const std::uint8_t> dataPage, int index) const;
    // The row a row pointer (page << 8 | row) addresses.
    RowSlot rowAt(std::uint32_t rowPointer) const;

    // Throws Error(DamagedFile) for `reason`; `found` and `stated` as Error::counts.
    [[noreturn]] static void damaged(Reason reason, const std::string& what, std::uint64_t found = 0,
                                     std::uint64_t stated = 0);

private:
    const Layout& m_layout;
    Header m_header;
    std::span<const std::uint8_t> m_file;
    std::vector<std::uint8_t> m_decoded;
    std::uint32_t m_pageCount = 0;
};

} // namespace jet
