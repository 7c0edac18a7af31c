#include "Dates.h"

#include "JetDateText.h"

#include <QList>

namespace store {

namespace {

// One to four ASCII digits.
bool readNumber(QStringView digits, int& value)
{
    if (digits.isEmpty() || digits.size() > 4)
        return false;
    value = 0;
    for (const QChar c : digits) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
        value = value * 10 + (c.unicode() - '0');
    }
    return true;
}

int twoDigitYear(int yy)
{
    return yy < 30 ? 2000 + yy : 1900 + yy;
}

std::optional<QDate> validDate(int year, int month, int day)
{
    if (year < 100 || year > 9999)
        return std::nullopt;
    const QDate date(year, month, day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace

std::optional<QDate> parseDate(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    const bool dotted = trimmed.contains(QLatin1Char('.'));
    const QList<QStringView> parts = trimmed.split(dotted ? QLatin1Char('.') : QLatin1Char('-'));
    if (parts.size() != 3)
        return std::nullopt;
    int numbers[3] = {0, 0, 0};
    for (int i = 0; i < 3; ++i)
        if (!readNumber(parts[i], numbers[i]))
            return std::nullopt;
    if (dotted) {
        const qsizetype yearDigits = parts[2].size();
        if (parts[0].size() > 2 || parts[1].size() > 2 || (yearDigits != 2 && yearDigits != 4))
            return std::nullopt;
        return validDate(yearDigits == 2 ? twoDigitYear(numbers[2]) : numbers[2], numbers[1], numbers[0]);
    }
    if (parts[0].size() != 4 || parts[1].size() > 2 || parts[2].size() > 2)
        return std::nullopt;
    return validDate(numbers[0], numbers[1], numbers[2]);
}

QString displayDate(QDate date)
{
    return date.toString(QStringLiteral("dd.MM.yyyy"));
}

QString storedDate(QDate date)
{
    return date.toString(QStringLiteral("yyyy-MM-dd"));
}

QString storedDateTime(const QDateTime& dateTime)
{
    if (dateTime.time() == QTime(0, 0))
        return storedDate(dateTime.date());
    return dateTime.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

namespace {

QVariantList datesBeginningWith(const QString& prefix)
{
    return {prefix, prefix + QLatin1Char('~')};
}

QString yearText(int year)
{
    return QStringLiteral("%1").arg(year, 4, 10, QLatin1Char('0'));
}

} // namespace

QVariantList storedMonthRange(int year, int month)
{
    return datesBeginningWith(yearText(year) + QStringLiteral("-%1").arg(month, 2, 10, QLatin1Char('0')));
}

QVariantList storedYearRange(int year)
{
    return datesBeginningWith(yearText(year));
}

QVariantList noStoredDates()
{
    const QString afterEveryDate = QStringLiteral("~");
    return {afterEveryDate, afterEveryDate};
}

QDate dateFromStored(QStringView text)
{
    const QByteArray latin = text.left(10).toLatin1();
    return dateFromStored(std::string_view(latin.constData(), static_cast<std::size_t>(latin.size())));
}

QDate dateFromStored(std::string_view text)
{
    const std::optional<jet::DateTime> days = jetDateFromText(text.substr(0, 10));
    return days ? fromJetDate(*days) : QDate();
}

jet::DateTime toJetDate(QDate date)
{
    return jet::DateTime{static_cast<double>(date.toJulianDay() - kJetEpochJulianDay)};
}

QDate fromJetDate(jet::DateTime value)
{
    return QDate::fromJulianDay(kJetEpochJulianDay + static_cast<qint64>(value.days));
}

} // namespace store
