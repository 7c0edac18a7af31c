#include "ExpenseCharts.h"

#include "store/Transaction.h"

#include <map>
#include <utility>

namespace charts {

namespace {

// One sum per account; accounts are told apart by code and name, as their
// list entries ("3 - Питание") tell them apart.
constexpr char kSumsByAccount[] =
    "SELECT Bills_Dict.F0, Bills_Dict.F1, WideSum(Bills.F3) "
    "FROM Bills INNER JOIN Bills_Dict ON Bills.F2 = Bills_Dict.F0 "
    "WHERE Bills.F1 >= ? AND Bills.F1 < ? "
    "GROUP BY Bills_Dict.F0, Bills_Dict.F1 ORDER BY Bills_Dict.F0, Bills_Dict.F1";

using AccountKey = std::pair<qlonglong, QString>;

AccountKey keyOf(const ChartBar& bar)
{
    return {bar.code, bar.name.toCaseFolded()};
}

// The month's accounts are among the year's, so numbering the year's bars
// gives every account one colour in both charts.
void assignColourSlots(ExpenseCharts& charts)
{
    std::map<AccountKey, int> colourOf;
    for (auto* data : {&charts.year, &charts.month})
        for (ChartBar& bar : data->bars) {
            const auto [at, added] = colourOf.try_emplace(keyOf(bar), static_cast<int>(colourOf.size()));
            bar.colourSlot = at->second;
        }
}

} // namespace

std::vector<ChartBar> ExpenseCharts::readBars(store::Transaction& tx, const QVariantList& range,
                                              const Threshold& threshold)
{
    std::vector<ChartBar> bars;
    for (const store::Row& row : tx.query(QString::fromUtf8(kSumsByAccount), range)) {
        ChartBar bar;
        bar.code = row.integer(0);
        // The legend shows the name as it stands in the catalogue.
        bar.name = row.text(1);
        bar.sum = row.wide(2);
        bar.excluded = threshold.excludes(bar.sum);
        bars.push_back(std::move(bar));
    }
    return bars;
}

std::optional<ExpenseCharts> ExpenseCharts::read(store::Store& store, const analytics::Period& period,
                                                 const Threshold& threshold)
{
    store::Transaction tx(store);
    ExpenseCharts charts;
    charts.month.category = period.label();
    charts.month.bars = readBars(tx, period.monthRange(), threshold);
    charts.year.category = period.yearText();
    charts.year.bars = readBars(tx, period.yearRange(), threshold);
    if (!tx.commit())
        return std::nullopt;
    assignColourSlots(charts);
    return charts;
}

} // namespace charts
