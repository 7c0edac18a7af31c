#pragma once

#include <cstddef>

namespace jet {

// Asks the system to back a large buffer with huge pages where it can: a
// file image of tens of megabytes is then faulted in a few hundred steps
// instead of tens of thousands. Only advice; nothing changes where the
// system has no such pages.
void preferHugePages(const void* data, std::size_t bytes);

} // namespace jet
