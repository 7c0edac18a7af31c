#include "ColumnValues.h"

#include "JetDateText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>
#include <type_traits>

namespace store::values {

namespace {

// Past this no Single or Double can be a Currency amount.
constexpr double kLargestAmount = 922337203685477.5807;

// floor(x × 10000 + 0.5) of a decimal text "[-]digits[.digits]", exactly.
std::optional<std::int64_t> unitsOfDecimal(std::string_view text)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (negative)
        text.remove_prefix(1);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point == std::string_view::npos ? "" : text.substr(point + 1);
    __int128 units = 0;
    for (char c : whole)
        units = units * 10 + (c - '0');
    for (std::size_t i = 0; i < 4; ++i)
        units = units * 10 + (i < fraction.size() ? fraction[i] - '0' : 0);
    // What lies past the unit against half of it: below, equal or above.
    int rest = 0;
    if (fraction.size() > 4) {
        rest = fraction[4] < '5' ? -1 : fraction[4] > '5' ? 1 : 0;
        if (rest == 0 && fraction.find_first_not_of('0', 5) != std::string_view::npos)
            rest = 1;
    } else {
        rest = -1;
    }
    // Half-up towards plus infinity: a negative half stays.
    if (negative ? rest > 0 : rest >= 0)
        ++units;
    if (negative)
        units = -units;
    if (units < std::numeric_limits<std::int64_t>::min() || units > std::numeric_limits<std::int64_t>::max())
        return std::nullopt;
    return static_cast<std::int64_t>(units);
}

template <typename Float> std::optional<std::int64_t> unitsOf(Float value)
{
    if (!std::isfinite(value) || std::fabs(static_cast<double>(value)) > kLargestAmount + 1)
        return std::nullopt;
    // Fixed notation of the shortest digits that read back as this value.
    char buffer[400];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    if (written.ec != std::errc())
        return std::nullopt;
    return unitsOfDecimal(std::string_view(buffer, static_cast<std::size_t>(written.ptr - buffer)));
}

template <typename Float> std::optional<Float> ofUnits(std::int64_t units)
{
    // Up to this many significant digits every decimal reads back from its
    // nearest binary value, and dividing exact integers rounds to nearest.
    constexpr std::int64_t kSafe = std::is_same_v<Float, double> ? 1'000'000'000'000'000 : 1'000'000;
    if (units > -kSafe && units < kSafe)
        return static_cast<Float>(static_cast<double>(units) / 10000.0);
    char buffer[32];
    const unsigned long long magnitude =
        units < 0 ? 0ULL - static_cast<unsigned long long>(units) : static_cast<unsigned long long>(units);
    const int n = std::snprintf(buffer, sizeof buffer, "%s%llu.%04llu", units < 0 ? "-" : "",
                                magnitude / 10000, magnitude % 10000);
    Float value{};
    if (std::from_chars(buffer, buffer + n, value).ec != std::errc())
        return std::nullopt;
    if (unitsOf(value) != units)
        return std::nullopt;
    return value;
}

struct ParsedDate
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    DateStyle style;
};

class DateReader
{
public:
    explicit DateReader(std::u16string_view text) : m_text(text)
    {
        while (!m_text.empty() && m_text.front() == u' ')
            m_text.remove_prefix(1);
        while (!m_text.empty() && m_text.back() == u' ')
            m_text.remove_suffix(1);
    }

    std::optional<ParsedDate> read()
    {
        ParsedDate d;
        int first = 0;
        const std::size_t digits = number(first, 4);
        if (take(u'.')) {
            d.day = first;
            if (digits > 2 || !number(d.month, 2) || !take(u'.') || number(d.year, 4) != 4)
                return std::nullopt;
        } else if (take(u'-')) {
            d.year = first;
            d.style.dotted = false;
            if (digits != 4 || !number(d.month, 2) || !take(u'-') || !number(d.day, 2))
                return std::nullopt;
        } else {
            return std::nullopt;
        }
        if (m_at == m_text.size())
            return d;
        d.style.withTime = true;
        if (!take(u' ') || !number(d.hour, 2) || !take(u':') || number(d.minute, 2) != 2)
            return std::nullopt;
        if (take(u':') && number(d.second, 2) != 2)
            return std::nullopt;
        if (m_at != m_text.size() || d.hour > 23 || d.minute > 59 || d.second > 59)
            return std::nullopt;
        return d;
    }

private:
    // Up to `most` digits; how many were read.
    std::size_t number(int& out, std::size_t most)
    {
        out = 0;
        std::size_t n = 0;
        for (; n < most && m_at < m_text.size() && m_text[m_at] >= u'0' && m_text[m_at] <= u'9'; ++n, ++m_at)
            out = out * 10 + (m_text[m_at] - u'0');
        return n;
    }
    bool take(char16_t c)
    {
        if (m_at >= m_text.size() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    std::u16string_view m_text;
    std::size_t m_at = 0;
};

} // namespace

std::optional<std::int64_t> unitsOfDouble(double value)
{
    return unitsOf(value);
}

std::optional<std::int64_t> unitsOfSingle(float value)
{
    return unitsOf(value);
}

std::optional<double> doubleOfUnits(std::int64_t units)
{
    return ofUnits<double>(units);
}

std::optional<float> singleOfUnits(std::int64_t units)
{
    return ofUnits<float>(units);
}

std::optional<jet::DateTime> dateOfText(const std::u16string& text)
{
    const std::optional<ParsedDate> d = DateReader(text).read();
    if (!d)
        return std::nullopt;
    char iso[20];
    std::snprintf(iso, sizeof iso, "%04d-%02d-%02d %02d:%02d:%02d", d->year, d->month, d->day, d->hour,
                  d->minute, d->second);
    return jetDateFromText(std::string_view(iso, 19));
}

std::optional<DateStyle> styleOf(const std::u16string& text)
{
    const std::optional<ParsedDate> d = DateReader(text).read();
    return d ? std::optional(d->style) : std::nullopt;
}

std::optional<std::u16string> textOfDate(jet::DateTime date, DateStyle style)
{
    std::optional<std::string> iso = jetDateToText(date);
    if (!iso)
        return std::nullopt;
    if (style.withTime && iso->size() == 10)
        *iso += " 00:00:00";
    std::string text =
        style.dotted ? iso->substr(8, 2) + '.' + iso->substr(5, 2) + '.' + iso->substr(0, 4) + iso->substr(10)
                     : *iso;
    return std::u16string(text.begin(), text.end());
}

} // namespace store::values
