#include "CsvExport.h"

#include "jet/Unicode.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace velmora {

using jet::Bytes;
using jet::ColumnType;
using jet::Currency;
using jet::DateTime;
using jet::Guid;
using jet::Null;
using jet::Row;
using jet::Table;
using jet::toUtf8;

namespace {

// Jet's date range, years 100 to 9999, with a day to spare on either side.
constexpr double kFirstDay = -657435.0;
constexpr double kLastDay = 2958466.0;

void appendQuoted(std::string& out, std::string_view text)
{
    out += '"';
    for (char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

template <typename Number> void appendNumber(std::string& out, Number value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

// printf's %.<digits>g, independent of the process locale.
void appendGeneral(std::string& out, double value, int digits)
{
    if (std::isnan(value)) {
        out += "nan";
        return;
    }
    if (std::isinf(value)) {
        out += value < 0 ? "-inf" : "inf";
        return;
    }
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
    out.append(buffer, result.ptr);
}

// Exact: the stored integer is the amount in units of 1/10000.
void appendCurrency(std::string& out, Currency value)
{
    const bool negative = value.units < 0;
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value.units) : static_cast<std::uint64_t>(value.units);
    if (negative)
        out += '-';
    appendNumber(out, magnitude / 10000);
    char fraction[8];
    std::snprintf(fraction, sizeof fraction, ".%04u", static_cast<unsigned>(magnitude % 10000));
    out += fraction;
}

void appendTwoDigits(std::string& out, unsigned value)
{
    out += static_cast<char>('0' + value / 10 % 10);
    out += static_cast<char>('0' + value % 10);
}

// "%m/%d/%y %H:%M:%S", quoted. The whole part of the value counts days from
// 1899-12-30 towards zero; the time of day is the fraction's magnitude, also
// for dates before 1899-12-30. Rounding to the second may carry into the next day.
void appendDate(std::string& out, DateTime value)
{
    if (!(value.days > kFirstDay && value.days < kLastDay)) {
        appendGeneral(out, value.days, 16);
        return;
    }
    const double whole = std::trunc(value.days);
    auto seconds = static_cast<long>(std::llround(std::fabs(value.days - whole) * 86400.0));
    auto day = std::chrono::sys_days{std::chrono::days{static_cast<long>(whole) - 25569}};
    if (seconds >= 86400) {
        seconds -= 86400;
        day += std::chrono::days{1};
    }
    const std::chrono::year_month_day date{day};
    out += '"';
    appendTwoDigits(out, static_cast<unsigned>(date.month()));
    out += '/';
    appendTwoDigits(out, static_cast<unsigned>(date.day()));
    out += '/';
    appendTwoDigits(out, static_cast<unsigned>(static_cast<int>(date.year()) % 100));
    out += ' ';
    appendTwoDigits(out, static_cast<unsigned>(seconds / 3600));
    out += ':';
    appendTwoDigits(out, static_cast<unsigned>(seconds / 60 % 60));
    out += ':';
    appendTwoDigits(out, static_cast<unsigned>(seconds % 60));
    out += '"';
}

// The GUID's usual text form, with its first three groups read little-endian.
// (mdb-export leaves out the dash between the last two groups.)
void appendGuid(std::string& out, const Guid& guid)
{
    static constexpr int kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    static constexpr char kHex[] = "0123456789ABCDEF";
    out += "\"{";
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            out += '-';
        const std::uint8_t byte = guid.bytes[kOrder[i]];
        out += kHex[byte >> 4];
        out += kHex[byte & 0x0F];
    }
    out += "}\"";
}

struct ValueAppender
{
    std::string& out;
    ColumnType type;

    void operator()(const Null&) const {}
    void operator()(bool value) const { out += value ? '1' : '0'; }
    void operator()(std::int32_t value) const { appendNumber(out, value); }
    void operator()(Currency value) const { appendCurrency(out, value); }
    void operator()(float value) const { appendGeneral(out, value, 8); }
    void operator()(double value) const { appendGeneral(out, value, 16); }
    void operator()(DateTime value) const { appendDate(out, value); }
    void operator()(const Guid& value) const { appendGuid(out, value); }

    // A zero-length text prints like Null.
    void operator()(const std::u16string& value) const
    {
        if (!value.empty())
            appendQuoted(out, toUtf8(value));
    }
    // Binary data goes out as it is; a zero-length OLE value still prints its quotes.
    void operator()(const Bytes& value) const
    {
        if (!value.empty() || type == ColumnType::Ole)
            appendQuoted(out, {reinterpret_cast<const char*>(value.data()), value.size()});
    }
};

} // namespace

std::string exportCsv(const Table& table)
{
    std::string out;
    out.reserve(64 + table.rows.size() * table.columns.size() * 12);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0)
            out += ',';
        out += toUtf8(table.columns[i].name);
    }
    out += '\n';
    for (const Row& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0)
                out += ',';
            const ColumnType type = i < table.columns.size() ? table.columns[i].type : ColumnType::Binary;
            std::visit(ValueAppender{out, type}, row[i]);
        }
        out += '\n';
    }
    return out;
}

} // namespace velmora
