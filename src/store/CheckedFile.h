#pragma once

#include "QuerySource.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace jet {
struct Database;
}

namespace store {

class Snapshot;
class WholeFile;

// A file that WholeFile::check found to be a sound Velmora data file: its
// bytes, ready to take the data file's place, and its contents, to be looked
// at first. Only the check makes one.
class CheckedFile
{
public:
    CheckedFile(CheckedFile&&) noexcept;
    ~CheckedFile();

    const std::vector<std::uint8_t>& bytes() const { return m_bytes; }
    // The contents loaded as the store loads the data file. Read-only.
    QuerySource& contents() const;

private:
    friend class WholeFile;
    // Throws std::exception when the store cannot load the contents.
    CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents);

    std::vector<std::uint8_t> m_bytes;
    std::unique_ptr<Snapshot> m_contents;
};

} // namespace store
