#include "UsageMap.h"

#include "ByteOrder.h"

namespace jet {

namespace {

void addSetBits(std::span<const std::uint8_t> bitmap, std::uint64_t firstPage, std::uint32_t pageCount,
                std::vector<std::uint32_t>& out)
{
    for (std::size_t byte = 0; byte < bitmap.size(); ++byte) {
        if (bitmap[byte] == 0)
            continue;
        for (int bit = 0; bit < 8; ++bit) {
            if (!((bitmap[byte] >> bit) & 1))
                continue;
            const std::uint64_t page = firstPage + byte * 8 + bit;
            if (page >= pageCount)
                PageSource::damaged(Reason::CutShort, "a table lists page " + std::to_string(page) +
                                                          ", beyond the end of the file (" +
                                                          std::to_string(pageCount) +
                                                          " pages): the file is cut short");
            out.push_back(static_cast<std::uint32_t>(page));
        }
    }
}

} // namespace

std::vector<std::uint32_t> readUsageMap(const PageSource& pages, std::uint32_t rowPointer)
{
    const RowSlot slot = pages.rowAt(rowPointer);
    const auto map = slot.bytes;
    if (map.size() < 5)
        PageSource::damaged(Reason::UsageMap, "a usage map row is too short");
    std::vector<std::uint32_t> result;
    if (map[0] == 0x00) {
        addSetBits(map.subspan(5), le::u32(&map[1]), pages.pageCount(), result);
    } else if (map[0] == 0x01) {
        const std::size_t pageSize = pages.layout().pageSize;
        const std::uint64_t pagesPerBitmap = (pageSize - 4) * 8;
        for (std::size_t slotIndex = 0; 1 + 4 * slotIndex + 4 <= map.size(); ++slotIndex) {
            const std::uint32_t bitmapPage = le::u32(&map[1 + 4 * slotIndex]);
            if (bitmapPage == 0)
                continue;
            const auto page = pages.page(bitmapPage);
            if (page[0] != 0x05)
                PageSource::damaged(Reason::UsageMap, "a usage map points at page " +
                                                          std::to_string(bitmapPage) +
                                                          ", which is not a bitmap page");
            addSetBits(page.subspan(4), slotIndex * pagesPerBitmap, pages.pageCount(), result);
        }
    } else {
        PageSource::damaged(Reason::UsageMap, "unknown usage map type " + std::to_string(map[0]));
    }
    return result;
}

} // namespace jet
