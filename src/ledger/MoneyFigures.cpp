#include "MoneyFigures.h"

#include "LedgerTables.h"

namespace ledger {

namespace {

bool noFurtherOut(store::WideAmount after, store::WideAmount before)
{
    return after.excess() <= before.excess();
}

} // namespace

MoneyFigures MoneyFigures::read(store::QuerySource& source, std::vector<QDate> monthDays)
{
    MoneyFigures figures;
    figures.purseTotal = tables::purseTotal(source);
    figures.bank = store::WideAmount(tables::storedBalance(source)) - figures.purseTotal;
    for (const QDate& day : monthDays)
        figures.months.push_back(MonthStatistics::forMonth(source, day));
    figures.monthDays = std::move(monthDays);
    return figures;
}

bool MoneyFigures::keepsInRange(const MoneyFigures& before) const
{
    if (!noFurtherOut(purseTotal, before.purseTotal) || !noFurtherOut(bank, before.bank))
        return false;
    for (std::size_t i = 0; i < months.size(); ++i) {
        const MonthFigures earlier = i < before.months.size() ? before.months[i] : MonthFigures();
        if (!noFurtherOut(months[i].income, earlier.income) ||
            !noFurtherOut(months[i].expenses, earlier.expenses))
            return false;
    }
    return true;
}

} // namespace ledger
