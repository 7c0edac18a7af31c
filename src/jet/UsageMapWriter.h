#pragma once

#include "PageBuffer.h"

#include <array>
#include <cstdint>
#include <span>

namespace jet::writer {

inline constexpr std::size_t kMapRowBytes = 69;
using MapRow = std::array<std::uint8_t, kMapRowBytes>;

// A usage-map row listing `pages` (ascending). Pages within 512 of each other
// get an inline map; a wider spread gets a reference map whose bitmap pages
// are appended to the file.
MapRow encodeUsageMap(std::span<const std::uint32_t> pages, PageBuffer& file);

// Page 1, written once the file has all its pages: the file-wide map (every
// page in use, pages past the end free) and the second row, all zero.
void writeGlobalMap(PageBuffer& file);

} // namespace jet::writer
