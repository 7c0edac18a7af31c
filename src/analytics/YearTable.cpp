#include "YearTable.h"

#include "AnalyticsTexts.h"
#include "store/CatalogueEntry.h"
#include "store/Transaction.h"

namespace analytics {

namespace {

// One sum per catalogue row and month, in code order. The month is read
// from the date text (yyyy-MM-dd), which costs far less than a date
// function; grouping by the catalogue row, a number, spares comparing names
// for every expense.
constexpr char kSumsByAccountAndMonth[] =
    "SELECT Bills_Dict.F0, Bills_Dict.F1, CAST(substr(Bills.F1, 6, 2) AS INTEGER) AS Mes, WideSum(Bills.F3), "
    "Bills_Dict.rowid FROM Bills INNER JOIN Bills_Dict ON Bills.F2 = Bills_Dict.F0 "
    "WHERE Bills.F1 >= ? AND Bills.F1 < ? "
    "GROUP BY Bills_Dict.rowid, Mes ORDER BY Bills_Dict.F0, Bills_Dict.F1, Bills_Dict.rowid, Mes";

bool sameAccount(const store::Row& a, const store::Row& b)
{
    return a.integer(4) == b.integer(4);
}

YearTableRow totalsRow(const std::vector<YearTableRow>& accounts)
{
    YearTableRow totals;
    totals.account = QString::fromUtf8(texts::totalsRow);
    totals.months.fill(store::WideAmount());
    for (const YearTableRow& row : accounts)
        for (std::size_t m = 0; m < row.months.size(); ++m)
            if (row.months[m])
                *totals.months[m] += *row.months[m];
    for (const auto& month : totals.months)
        totals.total += *month;
    return totals;
}

} // namespace

YearTable YearTable::read(store::Transaction& tx, const Period& period)
{
    YearTable table;
    const store::Rows sums = tx.query(QString::fromUtf8(kSumsByAccountAndMonth), period.yearRange());
    const store::Row* previous = nullptr;
    for (const store::Row& sum : sums) {
        if (!previous || !sameAccount(*previous, sum)) {
            YearTableRow row;
            row.account = store::CatalogueEntry::format(sum.value(0), sum.value(1)).left(kLabelLength);
            table.rows.push_back(row);
        }
        previous = &sum;
        const qlonglong month = sum.integer(2);
        if (month < 1 || month > 12 || !sum.value(3).isValid())
            continue;
        YearTableRow& row = table.rows.back();
        row.months[static_cast<std::size_t>(month - 1)] = sum.wide(3);
        row.total += sum.wide(3);
    }
    table.rows.push_back(totalsRow(table.rows));
    return table;
}

} // namespace analytics
