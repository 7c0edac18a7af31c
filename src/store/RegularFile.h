#pragma once

#include <cstdint>
#include <filesystem>
#include <sys/stat.h>
#include <vector>

namespace store {

// A file's bytes and the status of exactly the descriptor they were read from.
struct FileContents
{
    std::vector<std::uint8_t> bytes;
    struct stat status
    {
    };
};

// Reads a whole regular file, following symbolic links: the one way a file is
// read. A FIFO, device or folder is refused before it is opened (opening or
// reading one can block or never end), and so is a file over 2 GB. Throws
// FileError.
FileContents readRegularFile(const std::filesystem::path& path);

} // namespace store
