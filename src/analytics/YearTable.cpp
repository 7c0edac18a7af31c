#include "YearTable.h"

#include "AnalyticsTexts.h"
#include "ledger/Balances.h"
#include "store/Transaction.h"

namespace analytics {

namespace {

// One sum per account and month; the month is read from the date text
// (yyyy-MM-dd), which costs far less than a date function per row.
constexpr char kSumsByAccountAndMonth[] =
    "SELECT Bills_Dict.F0, Bills_Dict.F1, CAST(substr(Bills.F1, 6, 2) AS INTEGER) AS Mes, SUM(Bills.F3) "
    "FROM Bills INNER JOIN Bills_Dict ON Bills.F2 = Bills_Dict.F0 "
    "WHERE substr(Bills.F1, 1, 4) = ? "
    "GROUP BY Bills_Dict.F0, Bills_Dict.F1, Mes ORDER BY Bills_Dict.F0, Bills_Dict.F1, Mes";

bool sameAccount(const store::Row& a, const store::Row& b)
{
    // Names group as the store compares texts: without regard to case.
    return a.integer(0) == b.integer(0) && a.text(1).compare(b.text(1), Qt::CaseInsensitive) == 0 &&
           a.value(1).isValid() == b.value(1).isValid();
}

YearTableRow totalsRow(const std::vector<YearTableRow>& accounts)
{
    YearTableRow totals;
    totals.account = QString::fromUtf8(texts::totalsRow);
    totals.months.fill(store::Amount());
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
    const store::Rows sums = tx.query(QString::fromUtf8(kSumsByAccountAndMonth), {period.yearPrefix()});
    const store::Row* previous = nullptr;
    for (const store::Row& sum : sums) {
        if (!previous || !sameAccount(*previous, sum)) {
            YearTableRow row;
            row.account = ledger::listEntry(sum.value(0), sum.value(1)).left(kLabelLength);
            table.rows.push_back(row);
        }
        previous = &sum;
        const qlonglong month = sum.integer(2);
        if (month < 1 || month > 12 || !sum.value(3).isValid())
            continue;
        YearTableRow& row = table.rows.back();
        row.months[static_cast<std::size_t>(month - 1)] = sum.amount(3);
        row.total += sum.amount(3);
    }
    table.rows.push_back(totalsRow(table.rows));
    return table;
}

} // namespace analytics
