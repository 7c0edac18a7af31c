#include "SqlParameters.h"

#include "Amount.h"
#include "Dates.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QDate>
#include <QDateTime>

#include <limits>
#include <stdexcept>

namespace store::sql {

namespace {

void check(sqlite3_stmt* statement, int rc)
{
    if (rc != SQLITE_OK)
        throw SQLite::Exception(sqlite3_db_handle(statement), rc);
}

void bindText(sqlite3_stmt* statement, int index, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    check(statement, sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()),
                                       SQLITE_TRANSIENT));
}

void bindNull(sqlite3_stmt* statement, int index)
{
    check(statement, sqlite3_bind_null(statement, index));
}

void bindInteger(sqlite3_stmt* statement, int index, std::int64_t value)
{
    check(statement, sqlite3_bind_int64(statement, index, value));
}

void bindInteger(sqlite3_stmt* statement, int index, const QVariant& value)
{
    if (value.typeId() == QMetaType::ULongLong &&
        value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
        throw std::invalid_argument("a statement parameter outside the 64-bit range");
    bindInteger(statement, index, static_cast<std::int64_t>(value.toLongLong()));
}

void bindOne(sqlite3_stmt* statement, int index, const QVariant& value)
{
    if (!value.isValid() || value.isNull())
        return bindNull(statement, index);
    if (value.metaType() == QMetaType::fromType<Amount>())
        return bindInteger(statement, index, value.value<Amount>().units());
    switch (value.typeId()) {
    case QMetaType::Bool:
        return bindInteger(statement, index, value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return bindInteger(statement, index, value);
    case QMetaType::Double:
    case QMetaType::Float:
        return check(statement, sqlite3_bind_double(statement, index, value.toDouble()));
    case QMetaType::QDate:
        return value.toDate().isValid() ? bindText(statement, index, storedDate(value.toDate()))
                                        : bindNull(statement, index);
    case QMetaType::QDateTime:
        return value.toDateTime().isValid() ? bindText(statement, index, storedDateTime(value.toDateTime()))
                                            : bindNull(statement, index);
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return check(statement, sqlite3_bind_blob(statement, index, bytes.constData(),
                                                  static_cast<int>(bytes.size()), SQLITE_TRANSIENT));
    }
    case QMetaType::QString:
    case QMetaType::QChar:
        return bindText(statement, index, value.toString());
    default:
        throw std::invalid_argument(std::string("a statement parameter of kind ") + value.typeName());
    }
}

} // namespace

void bindParameters(sqlite3_stmt* statement, const QVariantList& values)
{
    const int count = sqlite3_bind_parameter_count(statement);
    if (values.size() != count)
        throw std::invalid_argument("the statement takes " + std::to_string(count) + " values, given " +
                                    std::to_string(values.size()));
    for (qsizetype i = 0; i < values.size(); ++i)
        bindOne(statement, static_cast<int>(i + 1), values[i]);
}

} // namespace store::sql
