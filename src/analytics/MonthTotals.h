#pragma once

#include "Period.h"
#include "store/WideAmount.h"

namespace store {
class Transaction;
}

namespace analytics {

// Income (the signed sum of the bank operations, so withdrawals lower it and
// it can be negative) and expenses of the chosen month and of its year; 0
// where the period has no operation.
struct MonthTotals
{
    store::WideAmount monthIncome;
    store::WideAmount yearIncome;
    store::WideAmount monthExpenses;
    store::WideAmount yearExpenses;

    bool operator==(const MonthTotals&) const = default;

    static MonthTotals read(store::Transaction& tx, const Period& period);
};

} // namespace analytics
