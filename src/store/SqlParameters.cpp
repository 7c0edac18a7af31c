#include "SqlParameters.h"

#include "Amount.h"
#include "Dates.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QStringDecoder>

#include <limits>
#include <stdexcept>

namespace store::sql {

namespace {

void bindText(SQLite::Statement& statement, int index, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    statement.bind(index, std::string(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

void bindInteger(SQLite::Statement& statement, int index, const QVariant& value)
{
    if (value.typeId() == QMetaType::ULongLong &&
        value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
        throw std::invalid_argument("a statement parameter outside the 64-bit range");
    statement.bind(index, static_cast<std::int64_t>(value.toLongLong()));
}

void bindOne(SQLite::Statement& statement, int index, const QVariant& value)
{
    if (!value.isValid() || value.isNull())
        return statement.bind(index);
    if (value.metaType() == QMetaType::fromType<Amount>())
        return statement.bind(index, static_cast<std::int64_t>(value.value<Amount>().units()));
    switch (value.typeId()) {
    case QMetaType::Bool:
        return statement.bind(index, value.toBool() ? 1 : 0);
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
        return statement.bind(index, value.toDouble());
    case QMetaType::QDate:
        return value.toDate().isValid() ? bindText(statement, index, storedDate(value.toDate()))
                                        : statement.bind(index);
    case QMetaType::QDateTime:
        return value.toDateTime().isValid() ? bindText(statement, index, storedDateTime(value.toDateTime()))
                                            : statement.bind(index);
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return statement.bind(index, bytes.constData(), static_cast<int>(bytes.size()));
    }
    case QMetaType::QString:
    case QMetaType::QChar:
        return bindText(statement, index, value.toString());
    default:
        throw std::invalid_argument(std::string("a statement parameter of kind ") + value.typeName());
    }
}

} // namespace

void bindParameters(SQLite::Statement& statement, const QVariantList& values)
{
    if (values.size() != statement.getBindParameterCount())
        throw std::invalid_argument("the statement takes " +
                                    std::to_string(statement.getBindParameterCount()) + " values, given " +
                                    std::to_string(values.size()));
    for (qsizetype i = 0; i < values.size(); ++i)
        bindOne(statement, static_cast<int>(i + 1), values[i]);
}

} // namespace store::sql
