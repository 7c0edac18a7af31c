#include "JetSqlValues.h"

#include "JetDateText.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <limits>
#include <sqlite3.h>
#include <stdexcept>

namespace store::sql {

namespace {

template <class... F> struct Overloaded : F...
{
    using F::operator()...;
};
template <class... F> Overloaded(F...) -> Overloaded<F...>;

std::int32_t narrowInteger(std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw std::range_error("integer outside its column's range");
    return static_cast<std::int32_t>(value);
}

int bindValue(sqlite3_stmt* s, int i, const jet::Value& value, std::array<char, 24>& date)
{
    return std::visit(
        Overloaded{
            [&](jet::Null) { return sqlite3_bind_null(s, i); },
            [&](bool v) { return sqlite3_bind_int(s, i, v ? 1 : 0); },
            [&](std::int32_t v) { return sqlite3_bind_int(s, i, v); },
            [&](jet::Currency v) { return sqlite3_bind_int64(s, i, v.units); },
            [&](float v) { return sqlite3_bind_double(s, i, v); },
            [&](double v) { return sqlite3_bind_double(s, i, v); },
            [&](jet::DateTime v) {
                const std::size_t n = jetDateToText(v, date.data());
                if (n == 0)
                    throw std::range_error("a date outside the years 100 to 9999");
                return sqlite3_bind_text(s, i, date.data(), static_cast<int>(n), SQLITE_STATIC);
            },
            [&](const std::u16string& v) {
                return sqlite3_bind_text16(s, i, v.data(), static_cast<int>(v.size() * 2), SQLITE_STATIC);
            },
            [&](const jet::Bytes& v) {
                return sqlite3_bind_blob(s, i, v.data(), static_cast<int>(v.size()), SQLITE_STATIC);
            },
            [&](const jet::Guid& v) {
                return sqlite3_bind_blob(s, i, v.bytes.data(), static_cast<int>(v.bytes.size()),
                                         SQLITE_STATIC);
            },
        },
        value);
}

jet::Bytes readBytes(sqlite3_stmt* s, int column)
{
    const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(s, column));
    return jet::Bytes(data, data + sqlite3_column_bytes(s, column));
}

jet::Value readDate(sqlite3_stmt* s, int column)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(s, column));
    const std::string_view view(text, static_cast<std::size_t>(sqlite3_column_bytes(s, column)));
    const std::optional<jet::DateTime> date = jetDateFromText(view);
    if (!date)
        throw std::range_error("not a date: " + std::string(view));
    return *date;
}

jet::Value readText(sqlite3_stmt* s, int column)
{
    const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(s, column));
    return std::u16string(text, static_cast<std::size_t>(sqlite3_column_bytes16(s, column)) / 2);
}

jet::Value readGuid(sqlite3_stmt* s, int column)
{
    const jet::Bytes bytes = readBytes(s, column);
    if (bytes.size() != 16)
        throw std::range_error("a GUID of the wrong length");
    jet::Guid guid;
    std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
    return guid;
}

} // namespace

void bindJetRow(sqlite3_stmt* statement, const std::vector<jet::Value>& row,
                std::vector<std::array<char, 24>>& dates)
{
    dates.resize(row.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        if (const int rc = bindValue(statement, static_cast<int>(i + 1), row[i], dates[i]); rc != SQLITE_OK)
            throw SQLite::Exception(sqlite3_db_handle(statement), rc);
}

jet::Value readJetValue(jet::ColumnType type, sqlite3_stmt* s, int column)
{
    using jet::ColumnType;
    if (sqlite3_column_type(s, column) == SQLITE_NULL)
        return jet::Null{};
    switch (type) {
    case ColumnType::Boolean:
        return sqlite3_column_int64(s, column) != 0;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
        return narrowInteger(sqlite3_column_int64(s, column));
    case ColumnType::Currency:
        return jet::Currency{sqlite3_column_int64(s, column)};
    case ColumnType::Single:
        return static_cast<float>(sqlite3_column_double(s, column));
    case ColumnType::Double:
    case ColumnType::Numeric:
        return sqlite3_column_double(s, column);
    case ColumnType::DateTime:
        return readDate(s, column);
    case ColumnType::Text:
    case ColumnType::Memo:
        return readText(s, column);
    case ColumnType::Guid:
        return readGuid(s, column);
    default:
        return readBytes(s, column);
    }
}

} // namespace store::sql
