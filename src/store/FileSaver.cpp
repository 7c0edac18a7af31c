#include "FileSaver.h"

#include "FailureCause.h"
#include "FileError.h"
#include "StoreError.h"
#include "StoreTexts.h"

#include <QDebug>

#include <future>

namespace store {

using Kind = StoreError::Kind;

FileSignature FileSaver::save(const NextFile& next, const FileSignature& expected) const
{
    checkUnchangedOnDisk(expected);
    // The check runs on a second thread while the file is written beside the
    // data file; the new file takes the data file's place only once it passed.
    std::future<void> check = std::async(std::launch::async, [&] { checkDecodesBack(next); });
    const FileSignature written = write(next.bytes(), [&] { check.get(); });
    if (check.valid()) // a writer that did not wait still reports a failed check
        check.get();
    return written;
}

void FileSaver::checkDecodesBack(const NextFile& next) const
{
    std::string difference;
    try {
        difference = next.firstDifference();
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

FileSignature FileSaver::write(std::span<const std::uint8_t> bytes,
                               const BeforeReplacing& beforeReplacing) const
{
    try {
        m_writer(m_file.path(), bytes, beforeReplacing);
        return FileSignature::of(m_file.path());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const StoreError&) {
        throw; // the check failed
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, m_file.displayPath(), describeFailure(e));
    }
}

} // namespace store
