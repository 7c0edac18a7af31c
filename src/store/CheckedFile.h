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

// A file that WholeFile found to be a sound Velmora data file: its bytes,
// ready to take the data file's place, and its contents, to be looked at
// first and then handed to the store, which need not read the file again.
// The contents are either loaded as the store loads the data file, or, for
// a file that differs from the data file only in some rows, the store's own
// contents with those rows taken in and not yet committed: then nothing
// else may use the store until this is put in place or dropped, which
// gives the store back its rows. Only WholeFile makes one.
class CheckedFile
{
public:
    CheckedFile(CheckedFile&&) noexcept;
    CheckedFile& operator=(CheckedFile&&) noexcept;
    ~CheckedFile();

    std::span<const std::uint8_t> bytes() const;
    // The contents, read-only.
    QuerySource& contents() const;
    // The rows of the tables that were only counted.
    std::size_t countedRows() const;

private:
    friend class WholeFile;
    // Throws std::exception when the store cannot load the contents. The
    // tables in `countedOnly` are checked and counted, not loaded.
    CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents,
                std::vector<std::u16string> countedOnly = {});
    // `image` has taken the rows of `bytes` (SqliteImage::beginTaking).
    CheckedFile(std::vector<std::uint8_t> bytes, SqliteImage& image);
    std::unique_ptr<SqliteImage> releaseImage() &&;
    // The store's image that took the rows, if that is how it was checked.
    SqliteImage* takingImage() const { return m_taking; }
    void taken() { m_taking = nullptr; }

    // Empty when the loaded image keeps the bytes as its last file.
    std::vector<std::uint8_t> m_bytes;
    std::unique_ptr<Snapshot> m_contents;
    SqliteImage* m_taking = nullptr;
};

} // namespace store
