#pragma once

#include "DataFile.h"
#include "FileSignature.h"
#include "jet/Database.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>

namespace store {

// Puts bytes in place of a file; writeFileAtomically unless a test
// hands in one that fails.
using FileWriter = std::function<void(const std::filesystem::path&, std::span<const std::uint8_t>)>;

// The save of a changed database: encode it in memory, decode the result and
// compare it with what was encoded, make sure the file on disk is still the
// one that was read, and only then write it atomically.
class FileSaver
{
public:
    FileSaver(const DataFile& file, const FileWriter& writer) : m_file(file), m_writer(writer) {}

    // Returns the signature of the new file. Throws StoreError: CannotWrite
    // when encoding, the check or the write fails, ChangedOnDisk when the file
    // no longer has the signature `expected`.
    FileSignature save(const jet::Database& database, const FileSignature& expected) const;

private:
    std::vector<std::uint8_t> encode(const jet::Database& database) const;
    void checkDecodesBack(std::span<const std::uint8_t> bytes, const jet::Database& database) const;
    void checkUnchangedOnDisk(const FileSignature& expected) const;
    void write(std::span<const std::uint8_t> bytes) const;

    const DataFile& m_file;
    const FileWriter& m_writer;
};

} // namespace store
