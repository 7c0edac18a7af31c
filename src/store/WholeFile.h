#pragma once

#include "FileWriter.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace store {

class Store;

// The data file of a Store taken as a whole: its bytes for a backup, and other
// bytes put in its place for a restore. Both hold the store's lock file while
// they work, so no handler of this or another Velmora process is inside a
// transaction meanwhile. A replaced file has a new signature, so the store
// reads it again at its next transaction.
class WholeFile
{
public:
    // Tests hand in a `writer` that makes writes fail.
    explicit WholeFile(const Store& store, FileWriter writer = atomicWriter());

    const std::filesystem::path& path() const { return m_path; }

    // Throws StoreError: Locked, LockUnusable, Missing or Unreadable.
    std::vector<std::uint8_t> read() const;
    // Writes atomically: a failure or a crash leaves the old file or the new
    // one, never a mix; a link is followed. A write-protected data file is
    // left as it is. Throws StoreError: Locked, LockUnusable, ReadOnly or
    // CannotWrite.
    void replace(std::span<const std::uint8_t> bytes) const;

private:
    std::filesystem::path m_path;
    FileWriter m_writer;
};

} // namespace store
