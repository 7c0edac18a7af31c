#include "DataFile.h"

#include "AtomicFile.h"
#include "FailureCause.h"
#include "FileError.h"
#include "RegularFile.h"
#include "Schema.h"
#include "StoreTexts.h"
#include "jet/ReadAhead.h"
#include "jet/Reader.h"

#include <sys/stat.h>
#include <unistd.h>

namespace store {

namespace fs = std::filesystem;
using Kind = StoreError::Kind;

namespace {

void removeTemporariesOf(const fs::path& file)
{
    std::error_code error;
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const fs::path target = folder / file.filename();
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (isTemporaryFileOf(target, entry.path()))
            fs::remove(entry.path(), error);
}

} // namespace

DataFile::DataFile(fs::path path, std::u16string password)
    : m_path(std::move(path)), m_password(std::move(password))
{}

QString DataFile::displayPath() const
{
    return QString::fromStdString(m_path.string());
}

StoreError DataFile::damaged(const QString& cause) const
{
    return StoreError::forFile(Kind::Damaged, displayPath(), cause);
}

FileContents DataFile::read() const
{
    try {
        return readRegularFile(m_path);
    } catch (const FileError& e) {
        throw readFailure(displayPath(), e);
    }
}

LoadedFile DataFile::load() const
{
    return decode(read());
}

LoadedFile DataFile::decode(const FileContents& contents) const
{
    LoadedFile loaded;
    loaded.signature = FileSignature::fromStat(contents.status);
    try {
        std::optional<jet::Error> damage;
        loaded.database = jet::salvageDatabase(contents.bytes, m_password, damage);
        if (damage)
            loaded.damage = damaged(describeJetError(*damage));
    } catch (const jet::Error& e) {
        if (e.code() == jet::ErrorCode::NotAValidPassword)
            throw StoreError::forFile(Kind::WrongPassword, displayPath(),
                                      QString::fromUtf8(texts::causeOtherPassword));
        loaded.damage = damaged(describeJetError(e));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        loaded.damage = damaged(describeFailure(e));
    }
    if (!loaded.damage)
        if (const std::string mismatch = schemaMismatch(loaded.database); !mismatch.empty())
            loaded.damage = damaged(QString::fromStdString(mismatch));
    if (loaded.damage) {
        loaded.database = withSchemaTables(std::move(loaded.database));
        if (loaded.database.password.empty())
            loaded.database.password = m_password;
    }
    return loaded;
}

std::unique_ptr<jet::ReadAhead> DataFile::readAhead(const FileContents& contents) const
{
    try {
        auto reading = std::make_unique<jet::ReadAhead>(contents.bytes, m_password);
        if (schemaMismatch(reading->database()).empty())
            return reading;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        // A wrong password or damage: decode() says which.
    }
    return nullptr;
}

void DataFile::removeStaleTemporaries() const
{
    removeTemporariesOf(m_path);
    try {
        if (const fs::path target = followLinks(m_path); target != m_path)
            removeTemporariesOf(target);
    } catch (const FileError&) {
        // A looping link: nothing can have been saved through it.
    }
}

bool isWriteProtected(const fs::path& file)
{
    struct stat st
    {
    };
    if (::stat(file.c_str(), &st) != 0)
        return false; // a missing file is reported as such where it matters
    // The mode bits count for root too, whom access() lets write anything.
    return (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(file.c_str(), W_OK) != 0;
}

} // namespace store
