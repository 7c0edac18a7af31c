#include "Recalculation.h"

#include "store/CatalogueEntry.h"
#include "store/Transaction.h"

namespace analytics {

std::optional<Recalculation> Recalculation::read(store::Store& store, const Period& period,
                                                 const std::optional<DetailRequest>& details)
{
    store::Transaction tx(store);
    Recalculation result;
    result.yearTable = YearTable::read(tx, period);
    result.totals = MonthTotals::read(tx, period);
    if (details)
        result.details = details->kind == DetailKind::Income
                             ? DetailTable::income(tx, period)
                             : DetailTable::expenses(tx, period, details->accountEntry);
    if (!tx.commit())
        return std::nullopt;
    return result;
}

std::optional<QString> monthEntry(store::Store& store, const Period& period)
{
    const auto month = period.month();
    if (!month)
        return std::nullopt;
    store::Transaction tx(store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT F0, F1 FROM Mon WHERE F0 = ?"), {*month});
    if (!tx.commit() || rows.empty())
        return std::nullopt;
    return store::CatalogueEntry::format(rows.back().value(0), rows.back().value(1));
}

} // namespace analytics
