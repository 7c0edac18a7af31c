#pragma once

#include "store/MoneyFigures.h"
#include "store/Store.h"

#include <QDate>

#include <optional>

namespace ledger {

// The figures of the month of `today` and of the month before it (January
// looks back to December of the year before).
struct MonthStatistics
{
    store::MonthFigures current;
    store::MonthFigures previous;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<MonthStatistics> read(store::Store& store, QDate today);
};

} // namespace ledger
