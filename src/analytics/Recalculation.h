#pragma once

#include "DetailTable.h"
#include "MonthTotals.h"
#include "Period.h"
#include "YearTable.h"

#include "store/Store.h"

#include <optional>

namespace analytics {

// Which detail list to build: the month's income, or the month's expenses
// of the account whose list entry is given.
struct DetailRequest
{
    DetailKind kind = DetailKind::Income;
    QString accountEntry;
};

// Everything "Пересчитать" shows, read in one go: the yearly account table,
// the month totals and, when asked for, the detail list.
struct Recalculation
{
    YearTable yearTable;
    MonthTotals totals;
    std::optional<DetailTable> details;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<Recalculation> read(store::Store& store, const Period& period,
                                             const std::optional<DetailRequest>& details);
};

// The month list's entry of the period's month ("3 - Март"), read from the
// month names of the data file; nullopt when there is none, or when the data
// file could not be read.
std::optional<QString> monthEntry(store::Store& store, const Period& period);

} // namespace analytics
