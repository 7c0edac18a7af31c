#include "FileSaver.h"

#include "DatabaseDiff.h"
#include "FailureCause.h"
#include "FileError.h"
#include "StoreError.h"
#include "StoreTexts.h"
#include "jet/Writer.h"

#include <QDebug>

namespace store {

using Kind = StoreError::Kind;

FileSignature FileSaver::save(const jet::Database& database, const FileSignature& expected) const
{
    const std::vector<std::uint8_t> bytes = encode(database);
    checkDecodesBack(bytes, database);
    checkUnchangedOnDisk(expected);
    return write(bytes);
}

std::vector<std::uint8_t> FileSaver::encode(const jet::Database& database) const
{
    try {
        return jet::encodeDatabase(database);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(), describeFailure(e));
    }
}

void FileSaver::checkDecodesBack(std::span<const std::uint8_t> bytes, const jet::Database& database) const
{
    std::string difference;
    try {
        difference = firstDifferenceInFile(database, bytes);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        difference = e.what();
    }
    if (difference.empty())
        return;
    // Which value differs helps a developer, not the user: it goes to the log.
    qWarning().noquote() << "velmora: the encoded file does not decode back:"
                         << QString::fromStdString(difference);
    throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(),
                              QString::fromUtf8(texts::causeVerifyFailed));
}

void FileSaver::checkUnchangedOnDisk(const FileSignature& expected) const
{
    try {
        if (FileSignature::of(m_file.path()) == expected)
            return;
    } catch (const FileError&) {
        // A file that is gone or cannot be examined has changed too.
    }
    throw StoreError::forFile(Kind::ChangedOnDisk, m_file.displayPath());
}

FileSignature FileSaver::write(std::span<const std::uint8_t> bytes) const
{
    try {
        m_writer(m_file.path(), bytes);
        return FileSignature::of(m_file.path());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(), describeFailure(e));
    }
}

} // namespace store
