#include "PageSource.h"

#include "ByteOrder.h"
#include "Error.h"
#include "Rc4.h"

#include <array>

namespace jet {

namespace {
constexpr std::uint16_t kOffsetMask = 0x1FFF;
}

PageSource::PageSource(std::span<const std::uint8_t> file, const Header& header)
    : m_layout(Layout::of(header.version)), m_header(header), m_file(file)
{
    m_pageCount = static_cast<std::uint32_t>(file.size() / m_layout.pageSize);
    if (header.databaseKey != 0) {
        // An encoded file: every page after the first is RC4-encrypted with
        // the database key XOR the page number.
        m_decoded.assign(file.begin(), file.begin() + std::size_t(m_pageCount) * m_layout.pageSize);
        for (std::uint32_t n = 1; n < m_pageCount; ++n) {
            std::array<std::uint8_t, 4> key{};
            le::put32(key.data(), header.databaseKey ^ n);
            rc4(key, std::span(m_decoded.data() + std::size_t(n) * m_layout.pageSize, m_layout.pageSize));
        }
        m_file = m_decoded;
    }
}

void PageSource::damaged(Reason reason, const std::string& what, std::uint64_t found, std::uint64_t stated)
{
    Error error(ErrorCode::DamagedFile, "Damaged database: " + what, reason);
    throw error.counts(found, stated);
}

std::span<const std::uint8_t> PageSource::page(std::uint32_t number) const
{
    if (number >= m_pageCount)
        damaged(Reason::CutShort, "page " + std::to_string(number) + " lies beyond the end of the file (" +
                                      std::to_string(m_pageCount) + " pages)");
    return m_file.subspan(std::size_t(number) * m_layout.pageSize, m_layout.pageSize);
}

int PageSource::rowCount(std::span<const std::uint8_t> dataPage) const
{
    const int count = le::u16(&dataPage[m_layout.dataRowCount]);
    if (m_layout.dataRowTable + 2 * std::size_t(count) > dataPage.size())
        damaged(Reason::Page, "a data page lists more rows than it can hold");
    return count;
}

RowSlot PageSource::row(std::span<const std::uint8_t> dataPage, int index) const
{
    if (dataPage[0] != 0x01)
        damaged(Reason::Page, "a row is looked for on a page that is not a data page");
    const int count = rowCount(dataPage);
    if (index < 0 || index >= count)
        damaged(Reason::Page, "row " + std::to_string(index) + " does not exist on its page");
    const std::uint16_t entry = le::u16(&dataPage[m_layout.dataRowTable + 2 * std::size_t(index)]);
    const std::size_t start = entry & kOffsetMask;
    const std::size_t end =
        index == 0 ? dataPage.size()
                   : le::u16(&dataPage[m_layout.dataRowTable + 2 * std::size_t(index - 1)]) & kOffsetMask;
    RowSlot slot;
    slot.flags = entry & 0xC000;
    if (slot.isDeleted() && (start >= end || end > dataPage.size()))
        return slot; // deleted rows may have no bytes at all
    if (start < m_layout.dataRowTable + 2 * std::size_t(count) || start > end || end > dataPage.size())
        damaged(Reason::Page, "row " + std::to_string(index) + " of a data page has impossible bounds");
    slot.bytes = dataPage.subspan(start, end - start);
    return slot;
}

RowSlot PageSource::rowAt(std::uint32_t rowPointer) const
{
    return row(page(rowPointer >> 8), rowPointer & 0xFF);
}

} // namespace jet
