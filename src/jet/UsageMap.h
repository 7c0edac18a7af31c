#pragma once

#include "PageSource.h"

#include <cstdint>
#include <vector>

namespace jet {

// The page numbers a usage map lists, in ascending order, limited to pages
// that exist in the file. `rowPointer` addresses the map's row.
std::vector<std::uint32_t> readUsageMap(const PageSource& pages, std::uint32_t rowPointer);

} // namespace jet
