#pragma once

#include "Period.h"
#include "store/Amount.h"

namespace store {
class Transaction;
}

namespace analytics {

// Income (the signed sum of the bank operations, so withdrawals lower it and
// it can be negative) and expenses of the chosen month and of its year; 0
// where the period has no operation.
struct MonthTotals
{
    store::Amount monthIncome;
    store::Amount yearIncome;
    store::Amount monthExpenses;
    store::Amount yearExpenses;

    bool operator==(const MonthTotals&) const = default;

    static MonthTotals read(store::Transaction& tx, const Period& period);
};

} // namespace analytics
