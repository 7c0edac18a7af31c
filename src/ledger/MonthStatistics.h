#pragma once

#include "store/Amount.h"
#include "store/Store.h"

#include <QDate>

#include <optional>

namespace store {
class Transaction;
}

namespace ledger {

// Money in and out during one calendar month. Income is the sum of the signed
// bank operations, so a month with more withdrawals than deposits has a
// negative income; expenses are the sum of the booked expenses.
struct MonthFigures
{
    store::Amount income;
    store::Amount expenses;

    bool operator==(const MonthFigures&) const = default;
};

// The figures of the month of `today` and of the month before it (January
// looks back to December of the year before).
struct MonthStatistics
{
    MonthFigures current;
    MonthFigures previous;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<MonthStatistics> read(store::Store& store, QDate today);
    static MonthFigures forMonth(store::Transaction& tx, int year, int month);
};

} // namespace ledger
