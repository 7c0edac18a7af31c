#pragma once

#include "UsageMapWriter.h"

#include <cstddef>
#include <cstdint>

namespace jet::writer {

// The pages holding the usage-map rows of all tables, 57 rows of 69 bytes
// per page, laid out before the maps' contents are known so that table
// definitions can point at them.
class UsageMapPages
{
public:
    static constexpr std::size_t kRowsPerPage = (kPageSize - kDataPageHeader) / (kMapRowBytes + 2);
    static std::size_t pagesFor(std::size_t maps) { return (maps + kRowsPerPage - 1) / kRowsPerPage; }

    // Uses pagesFor(maps) pages from `firstPage` on, which the file has already.
    UsageMapPages(PageBuffer& file, std::uint32_t firstPage, std::size_t maps);

    std::uint32_t pointer(std::size_t map) const;
    void put(std::size_t map, const MapRow& row);

private:
    PageBuffer& m_file;
    std::uint32_t m_firstPage;
};

} // namespace jet::writer
