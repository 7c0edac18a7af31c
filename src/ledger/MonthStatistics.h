#pragma once

#include "store/QuerySource.h"
#include "store/Store.h"
#include "store/WideAmount.h"

#include <QDate>

#include <optional>

namespace ledger {

// Money in and out during one calendar month. Income is the sum of the signed
// bank operations, so a month with more withdrawals than deposits has a
// negative income; expenses are the sum of the booked expenses.
struct MonthFigures
{
    store::WideAmount income;
    store::WideAmount expenses;

    bool operator==(const MonthFigures&) const = default;
};

// The figures of the month of `today` and of the month before it (January
// looks back to December of the year before).
struct MonthStatistics
{
    MonthFigures current;
    MonthFigures previous;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<MonthStatistics> read(store::Store& store, QDate today);
    // The figures of the month `day` lies in.
    static MonthFigures forMonth(store::QuerySource& source, QDate day);
    // A day in each of the two months shown on `today`.
    static std::vector<QDate> shownMonths(QDate today);
};

} // namespace ledger
