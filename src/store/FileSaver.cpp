#include "FileSaver.h"

#include "DatabaseDiff.h"
#include "StoreError.h"
#include "StoreTexts.h"
#include "jet/AtomicFile.h"
#include "jet/Writer.h"

namespace store {

using Kind = StoreError::Kind;

namespace {

QString withDetail(const char* cause, const std::string& detail)
{
    return QString::fromUtf8(cause) + QStringLiteral(" (") + QString::fromStdString(detail) +
           QLatin1Char(')');
}

} // namespace

FileSignature FileSaver::save(const jet::Database& database, const FileSignature& expected) const
{
    const std::vector<std::uint8_t> bytes = encode(database);
    checkDecodesBack(bytes, database);
    checkUnchangedOnDisk(expected);
    write(bytes);
    const std::optional<FileSignature> written = FileSignature::of(m_file.path());
    if (!written)
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(), StoreError::describeErrno(errno));
    return *written;
}

std::vector<std::uint8_t> FileSaver::encode(const jet::Database& database) const
{
    try {
        return jet::encodeDatabase(database);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(),
                                  withDetail(texts::causeTooLong, e.what()));
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
    if (!difference.empty())
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(),
                                  withDetail(texts::causeVerifyFailed, difference));
}

void FileSaver::checkUnchangedOnDisk(const FileSignature& expected) const
{
    const std::optional<FileSignature> current = FileSignature::of(m_file.path());
    if (!current || *current != expected)
        throw StoreError::forFile(Kind::ChangedOnDisk, m_file.displayPath());
}

void FileSaver::write(std::span<const std::uint8_t> bytes) const
{
    try {
        m_writer(m_file.path(), bytes);
    } catch (const jet::WriteError& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(),
                                  StoreError::describeErrno(e.errorNumber()));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(), QString::fromStdString(e.what()));
    }
}

} // namespace store
