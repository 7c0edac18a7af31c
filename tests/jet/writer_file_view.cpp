#include "writer_file_view.h"

#include "jet/ByteOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace writertest {

namespace le = jet::le;

namespace {

constexpr std::uint32_t kLval = 0x4C41564C;

std::size_t rowEnd(const std::uint8_t* p, std::size_t row)
{
    return row == 0 ? 4096 : le::u16(p + 14 + 2 * (row - 1)) & 0x1FFF;
}

void expectConsistentDataPage(const std::uint8_t* p, std::uint32_t number)
{
    const std::size_t rows = le::u16(p + 12);
    EXPECT_LE(rows, 255u) << "page " << number;
    std::size_t used = 14;
    for (std::size_t r = 0; r < rows; ++r) {
        const std::size_t start = le::u16(p + 14 + 2 * r);
        ASSERT_EQ(start & 0xE000, 0u) << "page " << number << " row " << r << " carries flags";
        ASSERT_LT(start, rowEnd(p, r)) << "page " << number << " row " << r;
        const std::size_t length = rowEnd(p, r) - start;
        const bool lval = le::u32(p + 4) == kLval;
        if (number != 1) {
            EXPECT_LE(length, lval ? 4076u : 4060u) << "page " << number << " row " << r;
        }
        used += length + 2;
    }
    EXPECT_EQ(le::u16(p + 2), 4096 - used) << "free space of page " << number;
    EXPECT_EQ(le::u32(p + 8), 0u);
}

// Free-space field of a definition page: 4096 - bytes on the page - 8, not below 0.
void expectConsistentDefinition(const FileView& file, std::uint32_t first)
{
    const std::size_t length = le::u32(file.page(first) + 8);
    std::size_t done = 0;
    for (std::uint32_t n = first; n != 0; n = le::u32(file.page(n) + 4)) {
        ASSERT_LT(done, length) << "definition " << first << " has a page too many";
        const std::size_t payload =
            n == first ? std::min<std::size_t>(length, 4096) : std::min(length - done, std::size_t{4088});
        const std::size_t onPage = n == first ? payload : payload + 8;
        done += payload;
        EXPECT_EQ(le::u16(file.page(n) + 2), onPage + 8 >= 4096 ? 0 : 4096 - onPage - 8) << "page " << n;
    }
    ASSERT_EQ(done, length) << "definition " << first << " ends early";
    const auto def = file.definition(first);
    EXPECT_EQ(le::u16(&def[length - 2]), 0xFFFF) << "definition " << first << " does not end with FF FF";
}

} // namespace

std::vector<std::uint32_t> FileView::definitionPages() const
{
    std::set<std::uint32_t> continuations, all;
    for (std::uint32_t n = 1; n < pageCount(); ++n)
        if (page(n)[0] == 0x02) {
            all.insert(n);
            if (const std::uint32_t next = le::u32(page(n) + 4))
                continuations.insert(next);
        }
    std::vector<std::uint32_t> first;
    std::set_difference(all.begin(), all.end(), continuations.begin(), continuations.end(),
                        std::back_inserter(first));
    return first;
}

std::uint32_t FileView::definitionWithRowCount(std::uint32_t rows) const
{
    for (const std::uint32_t n : definitionPages())
        if (le::u32(page(n) + 0x10) == rows)
            return n;
    return 0;
}

std::vector<std::uint8_t> FileView::definition(std::uint32_t first) const
{
    std::vector<std::uint8_t> def(page(first), page(first) + 4096);
    for (std::uint32_t n = le::u32(page(first) + 4); n != 0; n = le::u32(page(n) + 4))
        def.insert(def.end(), page(n) + 8, page(n) + 4096);
    def.resize(std::min<std::size_t>(def.size(), le::u32(page(first) + 8)));
    return def;
}

std::size_t FileView::definitionPageCount(std::uint32_t first) const
{
    std::size_t count = 0;
    for (std::uint32_t n = first; n != 0; n = le::u32(page(n) + 4))
        ++count;
    return count;
}

std::span<const std::uint8_t> FileView::row(std::uint32_t pointer) const
{
    const std::uint8_t* p = page(pointer >> 8);
    const std::size_t r = pointer & 0xFF;
    const std::size_t start = le::u16(p + 14 + 2 * r) & 0x1FFF;
    return {p + start, rowEnd(p, r) - start};
}

std::vector<std::uint32_t> FileView::mapPages(std::uint32_t pointer, int* type) const
{
    const auto map = row(pointer);
    if (type)
        *type = map[0];
    std::vector<std::uint32_t> pages;
    const auto collect = [&](const std::uint8_t* bitmap, std::size_t bytes, std::uint32_t start) {
        for (std::size_t bit = 0; bit < 8 * bytes; ++bit)
            if (bitmap[bit / 8] >> (bit % 8) & 1)
                pages.push_back(static_cast<std::uint32_t>(start + bit));
    };
    if (map[0] == 0)
        collect(map.data() + 5, map.size() - 5, le::u32(map.data() + 1));
    for (std::size_t slot = 0; map[0] == 1 && slot < (map.size() - 1) / 4; ++slot)
        if (const std::uint32_t bitmapPage = le::u32(map.data() + 1 + 4 * slot)) {
            EXPECT_EQ(page(bitmapPage)[0], 0x05);
            collect(page(bitmapPage) + 4, 4092, static_cast<std::uint32_t>(slot * 4092 * 8));
        }
    return pages;
}

std::vector<std::uint32_t> FileView::pagesOwnedBy(std::uint32_t owner) const
{
    std::vector<std::uint32_t> pages;
    for (std::uint32_t n = 2; n < pageCount(); ++n)
        if (page(n)[0] == 0x01 && le::u32(page(n) + 4) == owner)
            pages.push_back(n);
    return pages;
}

void expectConsistentPages(const FileView& file)
{
    ASSERT_GT(file.pageCount(), 3u);
    for (std::uint32_t n = 1; n < file.pageCount(); ++n) {
        const std::uint8_t* p = file.page(n);
        EXPECT_EQ(p[1], 0x01) << "page " << n;
        if (p[0] == 0x01) {
            expectConsistentDataPage(p, n);
        } else {
            EXPECT_TRUE(p[0] == 0x02 || p[0] == 0x05) << "page " << n << " of type " << int(p[0]);
        }
    }
    for (const std::uint32_t first : file.definitionPages())
        expectConsistentDefinition(file, first);
    // The file-wide map on page 1: pages of the file in use, the rest free.
    int type = -1;
    const auto free = file.mapPages(1u << 8, &type);
    EXPECT_EQ(type, 0);
    ASSERT_FALSE(free.empty());
    EXPECT_EQ(free.front(), file.pageCount());
    EXPECT_EQ(free.size(), free.back() - free.front() + 1);
}

} // namespace writertest
