#pragma once

#include "jet/Value.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringView>

#include <optional>

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

// Jet's day count (days since 1899-12-30) and back; the time of day is dropped.
jet::DateTime toJetDate(QDate date);
QDate fromJetDate(jet::DateTime value);

} // namespace store
