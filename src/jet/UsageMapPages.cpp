#include "UsageMapPages.h"

#include "ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace jet::writer {

namespace {

std::size_t rowStart(std::size_t row)
{
    return kPageSize - kMapRowBytes * (row + 1);
}

} // namespace

UsageMapPages::UsageMapPages(PageBuffer& file, std::uint32_t firstPage, std::size_t maps)
    : m_file(file), m_firstPage(firstPage)
{
    for (std::size_t page = 0; page < pagesFor(maps); ++page) {
        const std::size_t rows = std::min(kRowsPerPage, maps - page * kRowsPerPage);
        std::uint8_t* p = file.page(static_cast<std::uint32_t>(firstPage + page));
        p[0] = 0x01;
        p[1] = 0x01;
        le::put16(p + 2, static_cast<std::uint16_t>(kPageSize - kDataPageHeader - rows * (kMapRowBytes + 2)));
        le::put16(p + 12, static_cast<std::uint16_t>(rows));
        for (std::size_t row = 0; row < rows; ++row)
            le::put16(p + kDataPageHeader + 2 * row, static_cast<std::uint16_t>(rowStart(row)));
    }
}

std::uint32_t UsageMapPages::pointer(std::size_t map) const
{
    return rowPointer(static_cast<std::uint32_t>(m_firstPage + map / kRowsPerPage), map % kRowsPerPage);
}

void UsageMapPages::put(std::size_t map, const MapRow& row)
{
    std::uint8_t* p = m_file.page(static_cast<std::uint32_t>(m_firstPage + map / kRowsPerPage));
    std::memcpy(p + rowStart(map % kRowsPerPage), row.data(), row.size());
}

} // namespace jet::writer
