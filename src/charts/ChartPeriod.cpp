#include "ChartPeriod.h"

#include "store/TextPiece.h"

#include <stdexcept>

namespace charts {

namespace {

std::optional<int> wholeNumber(const QString& text, int lowest, int highest)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < lowest || value > highest)
        return std::nullopt;
    return value;
}

QString dayText(int year, int month)
{
    return QStringLiteral("%1-%2-01").arg(year, 4, 10, QLatin1Char('0')).arg(month, 2, 10, QLatin1Char('0'));
}

} // namespace

ChartPeriod ChartPeriod::choose(const QString& monthField, const QString& yearField, QDate today)
{
    ChartPeriod period;
    try {
        period.m_month = store::textPiece(monthField, QStringLiteral(" -"), 1);
    } catch (const std::out_of_range&) {
        period.m_month = monthField; // more pieces than any month entry has: no month at all
    }
    if (period.m_month.isEmpty())
        period.m_month = QString::number(today.month());
    period.m_year = yearField.isEmpty() ? QString::number(today.year()) : yearField;
    return period;
}

std::optional<int> ChartPeriod::month() const
{
    return wholeNumber(m_month, 1, 12);
}

std::optional<int> ChartPeriod::year() const
{
    return wholeNumber(m_year, 100, 9999);
}

QString ChartPeriod::monthLabel() const
{
    const QString month = m_month.size() == 1 ? QStringLiteral("0") + m_month : m_month;
    return month + QLatin1Char('.') + m_year;
}

std::optional<DateRange> ChartPeriod::monthRange() const
{
    const auto y = year();
    const auto m = month();
    if (!y || !m)
        return std::nullopt;
    // "9999-13-01" sorts after every date of December 9999, so it ends that month too.
    return DateRange{dayText(*y, *m), dayText(*y, *m + 1)};
}

std::optional<DateRange> ChartPeriod::yearRange() const
{
    const auto y = year();
    if (!y)
        return std::nullopt;
    return DateRange{dayText(*y, 1), dayText(*y + 1, 1)};
}

} // namespace charts
