#pragma once

#include "jet/Value.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringView>
#include <QVariantList>

#include <optional>
#include <string_view>

namespace store {

// A typed date: d.M.yyyy (dd.MM.yyyy), d.M.yy (00-29 → 20xx, 30-99 → 19xx) or
// yyyy-MM-dd, spaces around allowed. Strict: 31.02.2026 or 2026-13-01 give
// nullopt. Four-digit years run from 100 to 9999, the range of the data file.
std::optional<QDate> parseDate(QStringView text);

// dd.MM.yyyy, as dates are shown.
QString displayDate(QDate date);

// The text a date is kept as in the store's tables: yyyy-MM-dd, or
// yyyy-MM-dd HH:mm:ss when it has a time of day.
QString storedDate(QDate date);
QString storedDateTime(const QDateTime& dateTime);
// Back from that text; an invalid QDate when the text is not a stored date.
QDate dateFromStored(QStringView text);
QDate dateFromStored(std::string_view text);

// The stored dates of one month or one year, as the two values of
// "F1 >= ? AND F1 < ?". March 2005 runs from "2005-03" up to "2005-03~" ('~'
// sorts after digits, '-' and ' '): a plain text comparison that the index
// on dates serves, with no date function per row.
QVariantList storedMonthRange(int year, int month);
QVariantList storedYearRange(int year);
// A range no stored date falls into.
QVariantList noStoredDates();

// Jet's day count (days since 1899-12-30) and back; the time of day is dropped.
jet::DateTime toJetDate(QDate date);
QDate fromJetDate(jet::DateTime value);

} // namespace store
