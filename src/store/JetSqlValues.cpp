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

// UTF-16 to UTF-8 ourselves: SQLite's own UTF-16 binding takes a leading
// U+FEFF or U+FFFE for a byte-order mark and drops or obeys it. A lone
// surrogate is kept in the three-byte form UTF-8 would give it, so that every
// text comes back exactly as it went in.
void appendSqliteText(std::u16string_view text, std::string& out)
{
    out.resize(3 * text.size()); // three bytes at most for each UTF-16 unit
    auto* p = reinterpret_cast<unsigned char*>(out.data());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c < 0x80) {
            *p++ = static_cast<unsigned char>(c);
            continue;
        }
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
        if (c < 0x800) {
            *p++ = static_cast<unsigned char>(0xC0 | (c >> 6));
        } else if (c < 0x10000) {
            *p++ = static_cast<unsigned char>(0xE0 | (c >> 12));
            *p++ = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
        } else {
            *p++ = static_cast<unsigned char>(0xF0 | (c >> 18));
            *p++ = static_cast<unsigned char>(0x80 | ((c >> 12) & 0x3F));
            *p++ = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
        }
        *p++ = static_cast<unsigned char>(0x80 | (c & 0x3F));
    }
    out.resize(static_cast<std::size_t>(p - reinterpret_cast<unsigned char*>(out.data())));
}

// The reverse, for any bytes: a sequence that is not UTF-8 becomes U+FFFD.
std::u16string textFromSqlite(const unsigned char* p, std::size_t n)
{
    std::u16string out;
    out.reserve(n);
    for (std::size_t i = 0; i < n;) {
        const unsigned char b = p[i];
        const std::size_t extra = b < 0x80         ? 0
                                  : (b >> 5) == 6  ? 1
                                  : (b >> 4) == 14 ? 2
                                  : (b >> 3) == 30 ? 3
                                                   : 4;
        char32_t c = extra == 0 ? b : extra == 1 ? (b & 0x1F) : extra == 2 ? (b & 0x0F) : (b & 0x07);
        bool valid = extra < 4;
        for (std::size_t k = 1; valid && k <= extra; ++k) {
            valid = i + k < n && (p[i + k] & 0xC0) == 0x80;
            c = (c << 6) | (p[i + k] & 0x3F);
        }
        if (!valid || c > 0x10FFFF) {
            out += u'\uFFFD';
            ++i;
            continue;
        }
        if (c >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
        i += extra + 1;
    }
    return out;
}

// The stored text of a date into `text` (24 bytes at least); its length.
std::size_t storedDateText(jet::DateTime date, char* text)
{
    const std::size_t n = jetDateToText(date, text);
    if (n == 0)
        throw std::range_error("a date outside the years 100 to 9999");
    return n;
}

int bindValue(sqlite3_stmt* s, int i, const jet::Value& value, std::string& buffer)
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
                buffer.resize(24);
                const std::size_t n = storedDateText(v, buffer.data());
                return sqlite3_bind_text(s, i, buffer.data(), static_cast<int>(n), SQLITE_STATIC);
            },
            [&](const std::u16string& v) {
                appendSqliteText(v, buffer);
                return sqlite3_bind_text(s, i, buffer.data(), static_cast<int>(buffer.size()), SQLITE_STATIC);
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
    const unsigned char* text = sqlite3_column_text(s, column);
    return textFromSqlite(text, static_cast<std::size_t>(sqlite3_column_bytes(s, column)));
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

void checkJetRow(const std::vector<jet::Value>& row)
{
    char text[24];
    for (const jet::Value& value : row)
        if (const auto* date = std::get_if<jet::DateTime>(&value))
            storedDateText(*date, text);
}

void bindJetRow(sqlite3_stmt* statement, const std::vector<jet::Value>& row, std::vector<std::string>& texts,
                int first)
{
    texts.resize(std::max<std::size_t>(texts.size(), first - 1 + row.size()));
    for (std::size_t i = 0; i < row.size(); ++i)
        if (const int rc = bindValue(statement, static_cast<int>(first + i), row[i], texts[first - 1 + i]);
            rc != SQLITE_OK)
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
