#pragma once

#include "QuerySource.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace jet {
struct Database;
}

namespace store {

class Snapshot;
class SqliteImage;
class WholeFile;

// A file that WholeFile::check found to be a sound Velmora data file: its
// bytes, ready to take the data file's place, and its contents loaded as the
// store loads the data file, to be looked at first and then handed to the
// store, which need not read the file again. Only the check makes one.
class CheckedFile
{
public:
    CheckedFile(CheckedFile&&) noexcept;
    CheckedFile& operator=(CheckedFile&&) noexcept;
    ~CheckedFile();

    std::span<const std::uint8_t> bytes() const;
    // The contents, read-only.
    QuerySource& contents() const;

private:
    friend class WholeFile;
    // Throws std::exception when the store cannot load the contents.
    CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents);
    std::unique_ptr<SqliteImage> releaseImage() &&;

    // Empty when the image keeps the bytes as its last file.
    std::vector<std::uint8_t> m_bytes;
    std::unique_ptr<Snapshot> m_contents;
};

} // namespace store
