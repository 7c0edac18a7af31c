#include "Period.h"

#include "store/CatalogueEntry.h"
#include "store/Dates.h"

namespace analytics {

namespace {

std::optional<int> wholeNumber(const QString& text, int lowest, int highest)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < lowest || value > highest)
        return std::nullopt;
    return value;
}

} // namespace

Period Period::choose(const QString& monthEntry, const QString& yearText, QDate today)
{
    Period period;
    period.m_month = store::CatalogueEntry::codePart(monthEntry).toString();
    if (period.m_month.isEmpty())
        period.m_month = QString::number(today.month());
    period.m_year = yearText.isEmpty() ? QString::number(today.year()) : yearText;
    return period;
}

std::optional<int> Period::month() const
{
    return wholeNumber(m_month, 1, 12);
}

std::optional<int> Period::year() const
{
    return wholeNumber(m_year, 100, 9999);
}

QVariantList Period::yearRange() const
{
    const auto y = year();
    return y ? store::storedYearRange(*y) : store::noStoredDates();
}

QVariantList Period::monthRange() const
{
    const auto y = year();
    const auto m = month();
    return y && m ? store::storedMonthRange(*y, *m) : store::noStoredDates();
}

QString Period::label() const
{
    const QString month = m_month.size() == 1 ? QStringLiteral("0") + m_month : m_month;
    return month + QLatin1Char('.') + m_year;
}

} // namespace analytics
