#pragma once

#include "ChartData.h"
#include "Threshold.h"
#include "analytics/Period.h"

#include <QVariantList>

#include <optional>

namespace store {
class Store;
class Transaction;
} // namespace store

namespace charts {

// The data of both charts of the charts window: expenses by account for the
// chosen month and for its whole year. An account is a row of the account
// catalogue; expenses booked against a code the catalogue lacks are not drawn.
struct ExpenseCharts
{
    ChartData month;
    ChartData year;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<ExpenseCharts> read(store::Store& store, const analytics::Period& period,
                                             const Threshold& threshold);
    // Bars of the expenses between the range's dates (Period::monthRange()
    // or yearRange()), without colours.
    static std::vector<ChartBar> readBars(store::Transaction& tx, const QVariantList& range,
                                          const Threshold& threshold);
};

} // namespace charts
