#include "StoreError.h"

#include "StoreTexts.h"

#include <cerrno>
#include <cstring>

namespace store {

StoreError::StoreError(Kind kind, const QString& message)
    : std::runtime_error(message.toStdString()), m_kind(kind), m_message(message)
{}

StoreError StoreError::forFile(Kind kind, const QString& path, const QString& cause)
{
    const char* text = nullptr;
    switch (kind) {
    case Kind::Missing:
        text = texts::fileMissing;
        break;
    case Kind::Unreadable:
        text = texts::fileUnreadable;
        break;
    case Kind::Damaged:
        text = texts::fileDamaged;
        break;
    case Kind::WrongPassword:
        text = texts::wrongPassword;
        break;
    case Kind::Locked:
        text = texts::fileLocked;
        break;
    case Kind::CannotWrite:
        text = texts::cannotWrite;
        break;
    case Kind::ChangedOnDisk:
        text = texts::changedOnDisk;
        break;
    case Kind::Statement:
        throw std::invalid_argument("StoreError::forFile: a statement error has no file");
    }
    const QString pattern = QString::fromUtf8(text);
    QString reason = cause;
    while (reason.endsWith(QLatin1Char('.'))) // the message puts its own full stop
        reason.chop(1);
    // One pass, so that a % in the path or the cause is left alone.
    return StoreError(kind,
                      pattern.contains(QLatin1String("%2")) ? pattern.arg(path, reason) : pattern.arg(path));
}

StoreError StoreError::statement(int number, const QString& description)
{
    return StoreError(Kind::Statement,
                      QString::fromUtf8(texts::engineError).arg(QString::number(number), description));
}

QString StoreError::describeErrno(int errorNumber)
{
    switch (errorNumber) {
    case ENOSPC:
        return QString::fromUtf8(texts::causeNoSpace);
    case EDQUOT:
        return QString::fromUtf8(texts::causeQuota);
    case EACCES:
    case EPERM:
        return QString::fromUtf8(texts::causeNoAccess);
    case EROFS:
        return QString::fromUtf8(texts::causeReadOnly);
    case EIO:
        return QString::fromUtf8(texts::causeIo);
    default:
        return QString::fromLocal8Bit(std::strerror(errorNumber));
    }
}

} // namespace store
