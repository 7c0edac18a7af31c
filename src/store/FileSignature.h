#pragma once

#include <cstdint>
#include <filesystem>

struct stat;

namespace store {

// What tells whether the data file on disk is still the one in memory: a
// save by another process replaces the file (new inode), and an edit in
// place changes size or modification time.
struct FileSignature
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNs = 0;
    std::int64_t changedNs = 0;

    bool operator==(const FileSignature&) const = default;

    static FileSignature fromStat(const struct stat& st);
    // Throws FileError when the file cannot be examined.
    static FileSignature of(const std::filesystem::path& path);
};

} // namespace store
