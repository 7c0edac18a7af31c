#include "SqlSchema.h"

#include "StoreTexts.h"
#include "jet/Unicode.h"

#include <QString>

namespace store::sql {

namespace {

using jet::ColumnType;

const char* sqlType(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Currency:
        return "INTEGER";
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::Numeric:
        return "REAL";
    case ColumnType::DateTime:
    case ColumnType::Text:
    case ColumnType::Memo:
        return "TEXT";
    default:
        return "BLOB";
    }
}

// The condition a value must meet, with {} standing for the column; empty when any value fits.
std::string checkFor(const jet::Column& column)
{
    switch (column.type) {
    case ColumnType::Boolean:
        return "{} IN (0, 1)";
    case ColumnType::Byte:
        return "{} BETWEEN 0 AND 255";
    case ColumnType::Integer:
        return "{} BETWEEN -32768 AND 32767";
    case ColumnType::Long:
        return "{} BETWEEN -2147483648 AND 2147483647";
    case ColumnType::DateTime:
        return std::string(kIsStoredDate) + "({})";
    case ColumnType::Text:
        return "length({}) <= " + std::to_string(column.maxChars());
    case ColumnType::Binary:
        return "length({}) <= " + std::to_string(column.length);
    case ColumnType::Guid:
        return "length({}) = 16";
    default:
        return {};
    }
}

// Characters as SQLite's length() counts them: a surrogate pair is one.
std::size_t codePoints(const std::u16string& text)
{
    std::size_t pairs = 0;
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        if (text[i] >= 0xD800 && text[i] < 0xDC00 && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
            ++pairs, ++i;
    return text.size() - pairs;
}

std::string checkName(const jet::Column& column)
{
    switch (column.type) {
    case ColumnType::DateTime:
        return texts::checkNotDate;
    case ColumnType::Text:
        return QString::fromUtf8(texts::checkTextTooLong).arg(column.maxChars()).toStdString();
    case ColumnType::Binary:
    case ColumnType::Guid:
        return texts::checkWrongLength;
    default:
        return texts::checkNumberOutOfRange;
    }
}

std::string replaceAll(std::string text, std::string_view what, std::string_view with)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

std::string columnDefinition(const std::string& tableName, const jet::Column& column)
{
    const std::string name = jet::toUtf8(column.name);
    std::string definition = quoteIdentifier(name) + " " + sqlType(column.type);
    // The file keeps no Null for a Boolean: a row written without one holds false.
    if (column.type == ColumnType::Boolean)
        definition += " NOT NULL DEFAULT 0";
    if (column.type == ColumnType::Text || column.type == ColumnType::Memo)
        definition += std::string(" COLLATE ") + kTextCollation;
    if (const std::string check = checkFor(column); !check.empty())
        definition += " CONSTRAINT " + quoteIdentifier(tableName + "." + name + ": " + checkName(column)) +
                      " CHECK (" + replaceAll(check, "{}", quoteIdentifier(name)) + ")";
    return definition;
}

} // namespace

std::string quoteIdentifier(std::string_view name)
{
    return '"' + replaceAll(std::string(name), "\"", "\"\"") + '"';
}

std::string quoteLiteral(std::string_view text)
{
    return '\'' + replaceAll(std::string(text), "'", "''") + '\'';
}

std::string createTable(const jet::Table& table)
{
    const std::string name = jet::toUtf8(table.name);
    std::string sql = "CREATE TABLE " + quoteIdentifier(name) + " (";
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        sql += (i ? ", " : "") + columnDefinition(name, table.columns[i]);
    return sql + ") STRICT";
}

bool meetsCheck(const jet::Column& column, const jet::Value& value)
{
    const auto* number = std::get_if<std::int32_t>(&value);
    switch (column.type) {
    case ColumnType::Byte:
        return !number || (*number >= 0 && *number <= 255);
    case ColumnType::Integer:
        return !number || (*number >= -32768 && *number <= 32767);
    case ColumnType::Text:
        if (const auto* text = std::get_if<std::u16string>(&value))
            return codePoints(*text) <= static_cast<std::size_t>(column.maxChars());
        return true;
    case ColumnType::Binary:
        if (const auto* bytes = std::get_if<jet::Bytes>(&value))
            return bytes->size() <= column.length;
        return true;
    default:
        // Long, Boolean and GUID values always fit; the others have no check.
        return true;
    }
}

std::string createCounters()
{
    return "CREATE TABLE " + quoteIdentifier(kCountersTable) +
           " (tbl TEXT PRIMARY KEY, last INTEGER NOT NULL) STRICT";
}

std::string rowidAndColumns(const jet::Table& table)
{
    std::string columns = "rowid";
    for (const jet::Column& column : table.columns)
        columns += ", " + quoteIdentifier(jet::toUtf8(column.name));
    return columns;
}

std::string tableName(const jet::Table& table)
{
    return quoteIdentifier(jet::toUtf8(table.name));
}

const jet::Column* numberedColumn(const jet::Table& table)
{
    for (const jet::Column& column : table.columns)
        if (column.autoNumber && column.type != jet::ColumnType::Guid)
            return &column;
    return nullptr;
}

std::string createAutoNumberTriggers(const jet::Table& table, const jet::Column& column)
{
    const std::string name = jet::toUtf8(table.name);
    const std::string t = quoteIdentifier(name);
    const std::string c = quoteIdentifier(jet::toUtf8(column.name));
    const std::string counters = quoteIdentifier(kCountersTable);
    const std::string key = quoteLiteral(name);
    return "CREATE TRIGGER " + quoteIdentifier(name + " autonumber") + " AFTER INSERT ON " + t +
           " WHEN NEW." + c + " IS NULL BEGIN UPDATE " + counters +
           " SET last = last + 1 WHERE tbl = " + key + "; UPDATE " + t + " SET " + c +
           " = (SELECT last FROM " + counters + " WHERE tbl = " + key +
           ") WHERE rowid = NEW.rowid; END;"
           "CREATE TRIGGER " +
           quoteIdentifier(name + " explicit number") + " AFTER INSERT ON " + t + " WHEN NEW." + c +
           " IS NOT NULL BEGIN UPDATE " + counters + " SET last = max(last, NEW." + c +
           ") WHERE tbl = " + key +
           "; END;"
           "CREATE TRIGGER " +
           quoteIdentifier(name + " number changed") + " AFTER UPDATE OF " + c + " ON " + t + " WHEN NEW." +
           c + " IS NOT NULL BEGIN UPDATE " + counters + " SET last = max(last, NEW." + c +
           ") WHERE tbl = " + key + "; END;";
}

} // namespace store::sql
