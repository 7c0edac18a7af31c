#pragma once

#include <QDate>
#include <QString>

#include <optional>

namespace charts {

// Stored dates from `first` (inclusive) up to `end` (exclusive), as the date
// texts of the data file ("2005-03-01").
struct DateRange
{
    QString first;
    QString end;
};

// The month and year of a drawing, taken from the window's fields: the month
// is what stands before the first " -" of the month field ("3 - Март" and "3"
// are the same month), the year is the year field as typed; an empty field
// means today's month or year. A text that is no month or year is kept as
// typed and matches no expense.
class ChartPeriod
{
public:
    static ChartPeriod choose(const QString& monthField, const QString& yearField, QDate today);

    const QString& monthText() const { return m_month; }
    const QString& yearText() const { return m_year; }

    // 1-12, and a year the data file can hold (100-9999); nullopt otherwise.
    std::optional<int> month() const;
    std::optional<int> year() const;

    // "03.2005": the month with a "0" in front when it has one character.
    QString monthLabel() const;
    // "2005": the year as typed.
    QString yearLabel() const { return m_year; }

    // nullopt when the period is not a real month or year.
    std::optional<DateRange> monthRange() const;
    std::optional<DateRange> yearRange() const;

private:
    QString m_month;
    QString m_year;
};

} // namespace charts
