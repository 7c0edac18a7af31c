#include "MonthTotals.h"

#include "store/Transaction.h"

namespace analytics {

namespace {

struct Sums
{
    store::WideAmount month;
    store::WideAmount year;
};

// The month's and the year's sum of one money column in one pass over the table.
Sums sumsOf(store::Transaction& tx, const QString& table, const QString& column, const Period& period)
{
    const QString sql = QStringLiteral("SELECT WideSum(CASE WHEN F1 >= ? AND F1 < ? THEN %1 END), "
                                       "WideSum(%1) FROM %2 WHERE F1 >= ? AND F1 < ?")
                            .arg(column, table);
    const store::Rows rows = tx.query(sql, period.monthRange() + period.yearRange());
    if (rows.empty())
        return {};
    return {rows.front().wide(0), rows.front().wide(1)};
}

} // namespace

MonthTotals MonthTotals::read(store::Transaction& tx, const Period& period)
{
    const Sums expenses = sumsOf(tx, QStringLiteral("Bills"), QStringLiteral("F3"), period);
    const Sums income = sumsOf(tx, QStringLiteral("Bank"), QStringLiteral("F2"), period);
    MonthTotals totals;
    totals.monthExpenses = expenses.month;
    totals.yearExpenses = expenses.year;
    totals.monthIncome = income.month;
    totals.yearIncome = income.year;
    return totals;
}

} // namespace analytics
