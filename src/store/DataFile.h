#pragma once

#include "FileSignature.h"
#include "jet/Database.h"

#include <QString>

#include <filesystem>

namespace store {

// The data file as read from disk: its decoded contents and the signature of
// exactly the bytes that were decoded.
struct LoadedFile
{
    jet::Database database;
    FileSignature signature;
};

// Reading the data file, with every failure turned into a StoreError that
// names the file and the cause.
class DataFile
{
public:
    DataFile(std::filesystem::path path, std::u16string password);

    const std::filesystem::path& path() const { return m_path; }
    QString displayPath() const;

    // Reads, decodes and checks that the file holds the eight tables.
    LoadedFile load() const;
    // Removes temporary files that a save interrupted by a crash left behind.
    // Only while holding the lock: no other save can be running then.
    void removeStaleTemporaries() const;

private:
    std::vector<std::uint8_t> readBytes(FileSignature& signature) const;

    std::filesystem::path m_path;
    std::u16string m_password;
};

} // namespace store
