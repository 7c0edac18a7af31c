#pragma once

#include <QDateTime>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace store {

// One automatic copy as the rotation sees it.
struct CopyFile
{
    std::filesystem::path path;
    QDateTime made;
    std::int64_t size = 0;
};

// The copies to remove at `now`: every copy of the last 14 days stays; of
// older ones the newest of each month stays for 12 months back, and the
// newest of each year before that. Then the oldest go until the rest fit
// `sizeLimit` together; the newest copy stays whatever its size.
std::vector<std::filesystem::path> copiesToRemove(std::vector<CopyFile> copies, const QDateTime& now,
                                                  std::int64_t sizeLimit);

} // namespace store
