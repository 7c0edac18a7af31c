#include "StoreError.h"

#include "StoreTexts.h"

#include <cerrno>
#include <iterator>
#include <stdexcept>

namespace store {

StoreError::StoreError(Kind kind, const QString& message, const QString& cause)
    : std::runtime_error(message.toStdString()), m_kind(kind), m_message(message), m_cause(cause)
{}

StoreError StoreError::forFile(Kind kind, const QString& path, const QString& cause)
{
    // In the order of Kind; a statement's error names no file.
    static constexpr const char* patterns[] = {
        texts::fileMissing,   texts::fileUnreadable, texts::fileDamaged,
        texts::wrongPassword, texts::fileLocked,     texts::lockUnusable,
        texts::fileReadOnly,  texts::cannotWrite,    texts::changedOnDisk};
    const auto index = static_cast<std::size_t>(kind);
    if (index >= std::size(patterns))
        throw std::invalid_argument("StoreError::forFile: a statement error has no file");
    const QString pattern = QString::fromUtf8(patterns[index]);
    QString reason = cause;
    while (reason.endsWith(QLatin1Char('.'))) // the message puts its own full stop
        reason.chop(1);
    // One pass, so that a % in the path or the cause is left alone.
    return StoreError(
        kind, pattern.contains(QLatin1String("%2")) ? pattern.arg(path, reason) : pattern.arg(path), reason);
}

StoreError StoreError::statement(int number, const QString& description)
{
    return StoreError(Kind::Statement,
                      QString::fromUtf8(texts::engineError).arg(QString::number(number), description));
}

QString StoreError::describeErrno(int errorNumber)
{
    struct Known
    {
        int number;
        const char* text;
    };
    static constexpr Known known[] = {
        {ENOSPC, texts::causeNoSpace},
        {EDQUOT, texts::causeQuota},
        {EACCES, texts::causeNoAccess},
        {EPERM, texts::causeNoAccess},
        {EROFS, texts::causeReadOnly},
        {EIO, texts::causeIo},
        {ENOENT, texts::causeNotFound},
        {EISDIR, texts::causeIsFolder},
        {ENOTDIR, texts::causeNotFolder},
        {ELOOP, texts::causeLinkLoop},
        {ENAMETOOLONG, texts::causeNameTooLong},
        {EMFILE, texts::causeTooManyFiles},
        {ENFILE, texts::causeTooManyFiles},
        {ENOMEM, texts::causeNoMemory},
        {EBUSY, texts::causeBusy},
        {ETXTBSY, texts::causeBusy},
    };
    for (const Known& k : known)
        if (k.number == errorNumber)
            return QString::fromUtf8(k.text);
    return QString::fromUtf8(texts::causeSystem).arg(errorNumber);
}

} // namespace store
