#include "JetDateText.h"

#include <QDate>

#include <chrono>
#include <cmath>

namespace store {

namespace {

constexpr double kSecondsPerDay = 86400;
constexpr double kFirstDay = -657434; // 0100-01-01
constexpr double kEndDay = 2958466;   // 10000-01-01
constexpr std::chrono::year_month_day kJetEpoch{std::chrono::year{1899}, std::chrono::December,
                                                std::chrono::day{30}};

bool readNumber(std::string_view text, std::size_t at, std::size_t width, int& out)
{
    out = 0;
    for (std::size_t i = at; i < at + width; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        out = out * 10 + (text[i] - '0');
    }
    return true;
}

void writeDigits(char* out, int value, int width)
{
    for (int i = width - 1; i >= 0; --i, value /= 10)
        out[i] = static_cast<char>('0' + value % 10);
}

bool readTime(std::string_view text, int& seconds)
{
    int h = 0, m = 0, s = 0;
    if (text[10] != ' ' || text[13] != ':' || text[16] != ':' || !readNumber(text, 11, 2, h) ||
        !readNumber(text, 14, 2, m) || !readNumber(text, 17, 2, s) || h > 23 || m > 59 || s > 59)
        return false;
    seconds = h * 3600 + m * 60 + s;
    return true;
}

} // namespace

std::size_t jetDateToText(jet::DateTime value, char* out)
{
    if (!std::isfinite(value.days))
        return 0;
    // Before day 0 the fraction still counts forward from midnight.
    double whole = std::trunc(value.days);
    if (whole < kFirstDay || whole >= kEndDay)
        return 0;
    long seconds = std::lround(std::fabs(value.days - whole) * kSecondsPerDay);
    if (seconds >= static_cast<long>(kSecondsPerDay)) {
        whole += 1;
        seconds = 0;
    }
    // The proleptic Gregorian calendar, as QDate's; day 0 is 1899-12-30.
    const std::chrono::year_month_day date{std::chrono::sys_days{kJetEpoch} +
                                           std::chrono::days{static_cast<int>(whole)}};
    if (date.year() > std::chrono::year{9999}) // the last second of 9999 rounded up
        return 0;
    writeDigits(out, static_cast<int>(date.year()), 4);
    out[4] = '-';
    writeDigits(out + 5, static_cast<int>(static_cast<unsigned>(date.month())), 2);
    out[7] = '-';
    writeDigits(out + 8, static_cast<int>(static_cast<unsigned>(date.day())), 2);
    if (seconds == 0)
        return 10;
    out[10] = ' ';
    writeDigits(out + 11, static_cast<int>(seconds / 3600), 2);
    out[13] = ':';
    writeDigits(out + 14, static_cast<int>(seconds / 60 % 60), 2);
    out[16] = ':';
    writeDigits(out + 17, static_cast<int>(seconds % 60), 2);
    return 19;
}

std::optional<std::string> jetDateToText(jet::DateTime value)
{
    char buffer[19];
    const std::size_t n = jetDateToText(value, buffer);
    return n ? std::optional(std::string(buffer, n)) : std::nullopt;
}

std::optional<jet::DateTime> jetDateFromText(std::string_view text)
{
    int year = 0, month = 0, day = 0, seconds = 0;
    if ((text.size() != 10 && text.size() != 19) || text[4] != '-' || text[7] != '-' ||
        !readNumber(text, 0, 4, year) || !readNumber(text, 5, 2, month) || !readNumber(text, 8, 2, day))
        return std::nullopt;
    if (text.size() == 19 && !readTime(text, seconds))
        return std::nullopt;
    const QDate date(year, month, day);
    if (!date.isValid() || year < 100)
        return std::nullopt;
    const double whole = static_cast<double>(date.toJulianDay() - kJetEpochJulianDay);
    const double fraction = seconds / kSecondsPerDay;
    return jet::DateTime{whole >= 0 ? whole + fraction : whole - fraction};
}

} // namespace store
