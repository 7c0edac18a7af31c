#include "FileSignature.h"

#include "FileError.h"

#include <cerrno>
#include <sys/stat.h>

namespace store {

namespace {

std::int64_t nanoseconds(const timespec& t)
{
    return std::int64_t{t.tv_sec} * 1'000'000'000 + t.tv_nsec;
}

} // namespace

FileSignature FileSignature::fromStat(const struct stat& st)
{
    return {static_cast<std::uint64_t>(st.st_dev), static_cast<std::uint64_t>(st.st_ino),
            static_cast<std::int64_t>(st.st_size), nanoseconds(st.st_mtim), nanoseconds(st.st_ctim)};
}

FileSignature FileSignature::of(const std::filesystem::path& path)
{
    struct stat st
    {
    };
    if (::stat(path.c_str(), &st) != 0)
        throw FileError::reading(path, FileError::Cause::System, errno);
    return fromStat(st);
}

} // namespace store
