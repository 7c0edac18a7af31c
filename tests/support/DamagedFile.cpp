#include "DamagedFile.h"

#include "jet/ByteOrder.h"
#include "jet/Catalog.h"
#include "jet/Header.h"
#include "jet/TableDefinition.h"
#include "jet/UsageMap.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace testsupport {

namespace {

// Where a row of a file that is not encoded lies in it.
std::size_t offsetOf(const std::vector<std::uint8_t>& file, std::span<const std::uint8_t> row)
{
    if (row.data() < file.data() || row.data() + row.size() > file.data() + file.size())
        throw std::logic_error("an encoded file cannot be patched");
    return static_cast<std::size_t>(row.data() - file.data());
}

jet::TableDefinition definitionOf(const jet::PageSource& pages, std::u16string_view table)
{
    for (const jet::CatalogEntry& entry : jet::readCatalog(pages))
        if (entry.name == table)
            return jet::readTableDefinition(pages, entry.definitionPage);
    throw std::logic_error("no such table");
}

// Where `table`'s usage-map row lies, and its length.
std::pair<std::size_t, std::size_t> mapOf(const std::vector<std::uint8_t>& file, std::u16string_view table)
{
    const jet::PageSource pages(file, jet::decodeHeader(file));
    const auto map = pages.rowAt(definitionOf(pages, table).ownedMap).bytes;
    return {offsetOf(file, map), map.size()};
}

// Where the header of the chained long value of `length` bytes lies: the
// length with kind 0, the first row, four zero bytes.
std::size_t longValueHeader(const std::vector<std::uint8_t>& file, std::uint32_t length)
{
    for (std::size_t at = 0; at + 12 <= file.size(); ++at)
        if (jet::le::u32(&file[at]) == length && jet::le::u32(&file[at + 8]) == 0)
            return at;
    throw std::logic_error("no long value of that length");
}

} // namespace

void hidePagesOf(std::vector<std::uint8_t>& file, std::u16string_view table)
{
    const auto [at, size] = mapOf(file, table);
    std::fill(file.begin() + at + 1, file.begin() + at + size, 0);
}

void shiftPagesOf(std::vector<std::uint8_t>& file, std::u16string_view table)
{
    const std::size_t at = mapOf(file, table).first;
    if (file[at] != 0x00)
        throw std::logic_error("not an inline map");
    jet::le::put32(&file[at + 1], 0);
}

int markLastPageForeign(std::vector<std::uint8_t>& file, std::u16string_view table)
{
    const jet::PageSource pages(file, jet::decodeHeader(file));
    const std::uint32_t last = jet::readUsageMap(pages, definitionOf(pages, table).ownedMap).back();
    const auto page = pages.page(last);
    file[offsetOf(file, page)] = 0x02;
    return pages.rowCount(page);
}

void loopLongValue(std::vector<std::uint8_t>& file, std::uint32_t length)
{
    const jet::PageSource pages(file, jet::decodeHeader(file));
    const std::uint32_t first = jet::le::u32(&file[longValueHeader(file, length) + 4]);
    jet::le::put32(&file[offsetOf(file, pages.rowAt(first).bytes)], first);
}

void restateLongValue(std::vector<std::uint8_t>& file, std::uint32_t length, std::uint32_t stated)
{
    jet::le::put32(&file[longValueHeader(file, length)], stated);
}

} // namespace testsupport
