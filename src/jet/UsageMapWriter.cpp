#include "UsageMapWriter.h"

#include "ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace jet::writer {

namespace {

constexpr std::size_t kInlinePages = 8 * (kMapRowBytes - 5);
constexpr std::size_t kBitmapPagePages = 8 * (kPageSize - 4);
constexpr std::size_t kReferenceSlots = (kMapRowBytes - 1) / 4;

void setBit(std::uint8_t* bitmap, std::size_t bit)
{
    bitmap[bit / 8] |= std::uint8_t(1u << (bit % 8));
}

MapRow referenceMap(std::span<const std::uint32_t> pages, PageBuffer& file)
{
    MapRow row{};
    row[0] = 0x01;
    std::array<std::uint32_t, kReferenceSlots> bitmapPages{};
    for (const std::uint32_t page : pages) {
        const std::size_t slot = page / kBitmapPagePages; // below 17 for any file under 2 GiB
        if (bitmapPages[slot] == 0) {
            bitmapPages[slot] = file.append();
            std::uint8_t* p = file.page(bitmapPages[slot]);
            p[0] = 0x05;
            p[1] = 0x01;
            le::put32(row.data() + 1 + 4 * slot, bitmapPages[slot]);
        }
        setBit(file.page(bitmapPages[slot]) + 4, page % kBitmapPagePages);
    }
    return row;
}

} // namespace

MapRow encodeUsageMap(std::span<const std::uint32_t> pages, PageBuffer& file)
{
    MapRow row{};
    if (pages.empty())
        return row;
    const std::uint32_t start = pages.front() / 8 * 8;
    if (pages.back() - start >= kInlinePages)
        return referenceMap(pages, file);
    le::put32(row.data() + 1, start);
    for (const std::uint32_t page : pages)
        setBit(row.data() + 5, page - start);
    return row;
}

void writeGlobalMap(PageBuffer& file)
{
    // Two rows and their offset entries must fit; a file larger than the
    // first row can describe (about 125 MB) is described up to that point.
    constexpr std::size_t maxBitmap = kPageSize - kDataPageHeader - 4 - kMapRowBytes - 5;
    const std::size_t pages = file.pageCount();
    const std::size_t bitmapBytes = std::min(std::max<std::size_t>(64, (pages + 7) / 8), maxBitmap);
    const std::size_t firstRow = 5 + bitmapBytes;
    std::uint8_t* p = file.page(1);
    p[0] = 0x01;
    p[1] = 0x01;
    le::put16(p + 2,
              static_cast<std::uint16_t>(kPageSize - kDataPageHeader - firstRow - 2 - kMapRowBytes - 2));
    le::put32(p + 4, 1);
    le::put16(p + 12, 2);
    const std::size_t firstStart = kPageSize - firstRow;
    le::put16(p + kDataPageHeader, static_cast<std::uint16_t>(firstStart));
    le::put16(p + kDataPageHeader + 2, static_cast<std::uint16_t>(firstStart - kMapRowBytes));
    std::uint8_t* bitmap = p + firstStart + 5; // type 0, start page 0
    for (std::size_t bit = pages; bit < 8 * bitmapBytes; ++bit)
        setBit(bitmap, bit);
}

} // namespace jet::writer
