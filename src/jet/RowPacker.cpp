#include "RowPacker.h"

#include "ByteOrder.h"

namespace jet::writer {

RowPacker::RowPacker(PageBuffer& file, std::uint32_t owner) : m_file(file), m_owner(owner) {}

bool RowPacker::hasRoomFor(std::size_t size) const
{
    if (m_pages.empty() || m_rows >= kMaxRowsPerPage)
        return false;
    return m_lowest >= size + kDataPageHeader + 2 * (m_rows + 1);
}

std::uint8_t* RowPacker::openPage()
{
    const std::uint32_t number = m_file.append();
    std::uint8_t* p = m_file.page(number);
    p[0] = 0x01;
    p[1] = 0x01;
    le::put16(p + 2, static_cast<std::uint16_t>(kPageSize - kDataPageHeader));
    le::put32(p + 4, m_owner);
    m_pages.push_back(number);
    m_rows = 0;
    m_lowest = kPageSize;
    return p;
}

std::uint8_t* RowPacker::adoptPage(const std::uint8_t* page)
{
    const std::uint32_t number = m_file.appendCopy(page);
    std::uint8_t* p = m_file.page(number);
    m_pages.push_back(number);
    le::put32(p + 4, m_owner);
    m_rows = le::u16(p + 12);
    // Rows lie downwards from the page end: the last one is the lowest.
    m_lowest = m_rows == 0 ? kPageSize : le::u16(p + kDataPageHeader + 2 * (m_rows - 1));
    return p;
}

RowPacker::Placed RowPacker::add(std::size_t size)
{
    if (!hasRoomFor(size))
        openPage();
    const std::uint32_t number = m_pages.back();
    std::uint8_t* p = m_file.page(number);
    m_lowest -= size;
    le::put16(p + kDataPageHeader + 2 * m_rows, static_cast<std::uint16_t>(m_lowest));
    ++m_rows;
    le::put16(p + 12, static_cast<std::uint16_t>(m_rows));
    // Rows are contiguous from the page end, so the bytes in use are
    // (kPageSize - m_lowest) of rows plus two per offset entry.
    le::put16(p + 2, static_cast<std::uint16_t>(m_lowest - kDataPageHeader - 2 * m_rows));
    return {p + m_lowest, rowPointer(number, m_rows - 1)};
}

} // namespace jet::writer
