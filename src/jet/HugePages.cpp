#include "HugePages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace jet {

void preferHugePages([[maybe_unused]] const void* data, [[maybe_unused]] std::size_t bytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    // Smaller buffers gain nothing: a huge page is 2 MB.
    constexpr std::size_t kWorthIt = std::size_t{8} << 20;
    if (bytes < kWorthIt)
        return;
    const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (begin + pageSize - 1) & ~(pageSize - 1);
    const std::uintptr_t last = (begin + bytes) & ~(pageSize - 1);
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}

} // namespace jet
