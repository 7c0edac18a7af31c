#pragma once

#include <QDate>
#include <QString>
#include <QVariantList>

#include <optional>

namespace analytics {

// The month and year the analytics window works on, as the user chose them:
// the month is the number before " -" in the month list's text, the year is
// the year list's text as it stands; an empty text means today's month or
// year. A text that is no month or no year is kept as typed and simply
// matches no operation.
class Period
{
public:
    static Period choose(const QString& monthEntry, const QString& yearText, QDate today);

    const QString& monthText() const { return m_month; }
    const QString& yearText() const { return m_year; }

    // The month 1-12 and a year of the data file (100-9999); nullopt when the
    // text is not one, and then no operation falls in the period.
    std::optional<int> month() const;
    std::optional<int> year() const;

    // The stored dates of the year and of the month, as the two values of
    // "F1 >= ? AND F1 < ?" (see store::storedMonthRange). A period that
    // matches nothing gives a range nothing falls into.
    QVariantList yearRange() const;
    QVariantList monthRange() const;

    // "03.2005": the month with a leading zero when it has one character, a
    // point and the year, as the reports print it.
    QString label() const;

private:
    QString m_month;
    QString m_year;
};

} // namespace analytics
