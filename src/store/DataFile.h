#pragma once

#include "FileSignature.h"
#include "RegularFile.h"
#include "StoreError.h"
#include "jet/Database.h"

#include <QString>

#include <filesystem>
#include <memory>
#include <optional>

namespace jet {
class ReadAhead;
}

namespace store {

// The data file as read from disk: its bytes, their decoded contents and the
// signature of exactly those bytes. A damaged file comes with what could
// still be read of it (its missing or unreadable tables empty) and `damage`,
// the message that says what is wrong; such a file must never be written over.
struct LoadedFile
{
    std::vector<std::uint8_t> bytes;
    jet::Database database;
    FileSignature signature;
    std::optional<StoreError> damage;
};

// True when a file (or the one a link points at) must not be changed: it
// has no write permission for anyone, or none for this process. Velmora
// could still replace it by a rename; it does not, the owner protected it.
bool isWriteProtected(const std::filesystem::path& file);

// Reading the data file, with every failure turned into a StoreError that
// names the file and the cause.
class DataFile
{
public:
    DataFile(std::filesystem::path path, std::u16string password);

    const std::filesystem::path& path() const { return m_path; }
    QString displayPath() const;

    // Reads the file. Throws StoreError: Missing or Unreadable.
    FileContents read() const;
    // Decodes what was read of this file and checks that it holds the eight
    // tables: the one judgement of what a Velmora data file is, for the data
    // file and for a file that is to take its place. A file without a
    // password opens, as it does with the Jet engine. Throws StoreError
    // (WrongPassword); damage is no failure here but part of the result.
    LoadedFile decode(const FileContents& contents) const;
    // read() and decode().
    LoadedFile load() const;
    // Starts decoding a file that is sound as far as its header and table
    // definitions tell: of this password, holding the eight tables as the
    // store keeps them. Null for any other file; decode() judges those.
    std::unique_ptr<jet::ReadAhead> readAhead(const FileContents& contents) const;
    // Removes temporary files that a save interrupted by a crash left behind,
    // beside the file a link points at too. Only while holding the lock: no
    // other save can be running then.
    void removeStaleTemporaries() const;

private:
    StoreError damaged(const QString& cause) const;

    std::filesystem::path m_path;
    std::u16string m_password;
};

} // namespace store
