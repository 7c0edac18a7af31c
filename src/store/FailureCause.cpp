#include "FailureCause.h"

#include "FileError.h"
#include "StoreError.h"
#include "StoreTexts.h"
#include "jet/Error.h"

#include <QStringList>

#include <cerrno>
#include <new>

namespace store {

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QString tableName(const jet::Error& e)
{
    return QString::fromStdU16String(e.table());
}

const char* damageText(jet::Reason reason)
{
    using jet::Reason;
    switch (reason) {
    case Reason::EmptyFile:
        return texts::causeEmptyFile;
    case Reason::NotJetFile:
        return texts::causeNotDataFile;
    case Reason::CutShort:
        return texts::causeFileCutShort;
    case Reason::Catalog:
    case Reason::Definition:
        return texts::causeDefinition;
    case Reason::UsageMap:
        return texts::causeUsageMap;
    case Reason::ForeignPage:
        return texts::causeForeignPage;
    case Reason::Page:
        return texts::causePage;
    case Reason::Row:
        return texts::causeRow;
    case Reason::RowCount:
        return texts::causeRowCount;
    case Reason::LongValue:
        return texts::causeLongValue;
    case Reason::LongValueReused:
        return texts::causeLongValueReused;
    case Reason::DuplicateTable:
        return texts::causeDuplicateTable;
    default:
        return texts::causeUnreadable;
    }
}

QString describeDamage(const jet::Error& e)
{
    const QString cause = text(damageText(e.reason()));
    if (!cause.contains(QLatin1String("%1")))
        return cause;
    if (e.table().empty())
        return text(texts::causeUnreadable);
    // One pass, so that a % in the table name is left alone.
    const QString table = tableName(e);
    const QString found = QString::number(e.found());
    if (cause.contains(QLatin1String("%3")))
        return cause.arg(table, found, QString::number(e.stated()));
    if (cause.contains(QLatin1String("%2")))
        return cause.arg(table, found);
    return cause.arg(table);
}

// "значение не помещается в столбец (таблица Bank, столбец F3, строка 2)"
QString describeValueThatDoesNotFit(const jet::Error& e)
{
    QStringList where;
    if (!e.table().empty())
        where << text(texts::whereTable).arg(tableName(e));
    if (!e.column().empty())
        where << text(texts::whereColumn).arg(QString::fromStdU16String(e.column()));
    if (e.found() > 0)
        where << text(texts::whereRow).arg(e.found());
    const QString cause = text(texts::causeTooLong);
    return where.isEmpty() ? cause : cause + QStringLiteral(" (") + where.join(QStringLiteral(", ")) + ')';
}

QString describeFile(const FileError& e)
{
    switch (e.cause()) {
    case FileError::Cause::NotRegularFile:
        return text(texts::causeNotRegular);
    case FileError::Cause::TooLarge:
        return text(texts::causeTooLarge);
    case FileError::Cause::System:
        break;
    }
    return StoreError::describeErrno(e.errorNumber());
}

} // namespace

QString describeJetError(const jet::Error& error)
{
    switch (error.reason()) {
    case jet::Reason::ValueDoesNotFit:
        return describeValueThatDoesNotFit(error);
    case jet::Reason::FileTooLarge:
        return text(texts::causeFileFull);
    default:
        return describeDamage(error);
    }
}

QString describeFailure(const std::exception& error)
{
    if (const auto* jetError = dynamic_cast<const jet::Error*>(&error))
        return describeJetError(*jetError);
    if (const auto* fileError = dynamic_cast<const FileError*>(&error))
        return describeFile(*fileError);
    if (dynamic_cast<const std::bad_alloc*>(&error))
        return text(texts::causeNoMemory);
    return text(texts::causeUnexpected);
}

StoreError readFailure(const QString& path, const FileError& error)
{
    const bool missing = error.cause() == FileError::Cause::System && error.errorNumber() == ENOENT;
    return StoreError::forFile(missing ? StoreError::Kind::Missing : StoreError::Kind::Unreadable, path,
                               describeFile(error));
}

} // namespace store
