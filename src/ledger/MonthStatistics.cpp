#include "MonthStatistics.h"

#include "store/Transaction.h"

namespace ledger {

std::optional<MonthStatistics> MonthStatistics::read(store::Store& store, QDate today)
{
    const std::vector<QDate> months = store::MoneyFigures::shownMonths(today);
    store::Transaction tx(store);
    MonthStatistics statistics;
    statistics.current = store::MonthFigures::of(tx, months[0]);
    statistics.previous = store::MonthFigures::of(tx, months[1]);
    if (!tx.commit())
        return std::nullopt;
    return statistics;
}

} // namespace ledger
