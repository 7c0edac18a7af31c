#pragma once

#include "PageSource.h"

#include <cstdint>
#include <vector>

namespace jet {

// The page numbers a usage map lists, in ascending order. A listed page beyond
// the end of the file means the file was cut short. `rowPointer` addresses the map row.
std::vector<std::uint32_t> readUsageMap(const PageSource& pages, std::uint32_t rowPointer);

} // namespace jet
