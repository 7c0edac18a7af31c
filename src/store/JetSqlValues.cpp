#include "JetSqlValues.h"

#include "JetDateText.h"
#include "jet/Unicode.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace store::sql {

namespace {

template <class... F> struct Overloaded : F...
{
    using F::operator()...;
};

std::int32_t narrowInteger(std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw std::range_error("integer outside its column's range");
    return static_cast<std::int32_t>(value);
}

jet::Bytes readBytes(const SQLite::Column& cell)
{
    const auto* data = static_cast<const std::uint8_t*>(cell.getBlob());
    return jet::Bytes(data, data + cell.getBytes());
}

jet::Value readDate(const SQLite::Column& cell)
{
    const char* text = cell.getText();
    const std::optional<jet::DateTime> date = jetDateFromText(std::string_view(text, cell.getBytes()));
    if (!date)
        throw std::range_error(std::string("not a date: ") + text);
    return *date;
}

jet::Value readGuid(const SQLite::Column& cell)
{
    const jet::Bytes bytes = readBytes(cell);
    if (bytes.size() != 16)
        throw std::range_error("a GUID of the wrong length");
    jet::Guid guid;
    std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
    return guid;
}

} // namespace

void bindJetValue(SQLite::Statement& statement, int index, const jet::Value& value)
{
    std::visit(Overloaded{
                   [&](jet::Null) { statement.bind(index); },
                   [&](bool v) { statement.bind(index, v ? 1 : 0); },
                   [&](std::int32_t v) { statement.bind(index, v); },
                   [&](jet::Currency v) { statement.bind(index, static_cast<std::int64_t>(v.units)); },
                   [&](float v) { statement.bind(index, static_cast<double>(v)); },
                   [&](double v) { statement.bind(index, v); },
                   [&](jet::DateTime v) {
                       const std::optional<std::string> text = jetDateToText(v);
                       if (!text)
                           throw std::range_error("a date outside the years 100 to 9999");
                       statement.bind(index, *text);
                   },
                   [&](const std::u16string& v) { statement.bind(index, jet::toUtf8(v)); },
                   [&](const jet::Bytes& v) { statement.bind(index, v.data(), static_cast<int>(v.size())); },
                   [&](const jet::Guid& v) {
                       statement.bind(index, v.bytes.data(), static_cast<int>(v.bytes.size()));
                   },
               },
               value);
}

jet::Value readJetValue(jet::ColumnType type, const SQLite::Column& cell)
{
    using jet::ColumnType;
    if (cell.isNull())
        return jet::Null{};
    switch (type) {
    case ColumnType::Boolean:
        return cell.getInt64() != 0;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
        return narrowInteger(cell.getInt64());
    case ColumnType::Currency:
        return jet::Currency{cell.getInt64()};
    case ColumnType::Single:
        return static_cast<float>(cell.getDouble());
    case ColumnType::Double:
    case ColumnType::Numeric:
        return cell.getDouble();
    case ColumnType::DateTime:
        return readDate(cell);
    case ColumnType::Text:
    case ColumnType::Memo:
        return jet::fromUtf8(std::string_view(cell.getText(), static_cast<std::size_t>(cell.getBytes())));
    case ColumnType::Guid:
        return readGuid(cell);
    default:
        return readBytes(cell);
    }
}

} // namespace store::sql
