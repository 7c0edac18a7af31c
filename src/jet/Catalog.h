#pragma once

#include "PageSource.h"

#include <cstdint>
#include <string>
#include <vector>

namespace jet {

struct CatalogEntry
{
    std::u16string name;
    std::uint32_t definitionPage = 0;
    bool system = false; // an engine or Access system table
};

// The tables listed in MSysObjects (whose definition is always on page 2),
// in catalog order.
std::vector<CatalogEntry> readCatalog(const PageSource& pages);

// Calls `visit` with every live row of the table whose data pages the owned
// map lists, in the order the rows lie on the pages. A listed page that is
// not a data page of this table is damage. (The other way round is not: files
// made elsewhere keep old data pages of a table that its map no longer lists.)
template <typename Visit>
void forEachStoredRow(const PageSource& pages, std::uint32_t definitionPage,
                      const std::vector<std::uint32_t>& owned, Visit&& visit);

} // namespace jet

#include "ByteOrder.h"

namespace jet {

template <typename Visit>
void forEachStoredRow(const PageSource& pages, std::uint32_t definitionPage,
                      const std::vector<std::uint32_t>& owned, Visit&& visit)
{
    for (const std::uint32_t number : owned) {
        const auto page = pages.page(number);
        if (page[0] != 0x01 || le::u32(&page[4]) != definitionPage)
            PageSource::damaged(Reason::ForeignPage,
                                "a table lists page " + std::to_string(number) +
                                    ", which is not one of its data pages",
                                number);
        const int count = pages.rowCount(page);
        for (int i = 0; i < count; ++i) {
            const RowSlot slot = pages.row(page, i);
            // Deleted rows and overflow stubs are skipped; a moved row is
            // read where its data now lies.
            if (slot.flags & 0x4000)
                continue;
            visit(slot.bytes);
        }
    }
}

} // namespace jet
