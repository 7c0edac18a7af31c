#pragma once

#include "store/WideAmount.h"

#include <QString>

#include <vector>

namespace charts {

// One account's bar: its expenses in the period, or a zero bar with the same
// place and name when the threshold leaves the account out.
struct ChartBar
{
    qlonglong code = 0;
    QString name;
    store::WideAmount sum;
    bool excluded = false;
    // The account's colour, the same in both charts of one drawing.
    int colourSlot = 0;

    store::WideAmount value() const { return excluded ? store::WideAmount() : sum; }
    bool operator==(const ChartBar&) const = default;
};

// What one chart shows: a single category, the period's label ("03.2005" or
// "2005"), with one bar per account in account-code order. No bars means the
// period had no expenses and the chart is hidden.
struct ChartData
{
    QString category;
    std::vector<ChartBar> bars;

    bool hasExpenses() const { return !bars.empty(); }
};

} // namespace charts
