#pragma once

#include "MonthStatistics.h"

#include "store/QuerySource.h"
#include "store/WideAmount.h"

#include <QDate>

#include <vector>

namespace ledger {

// The figures the main window shows of the money, computed wide so that any
// data file gives them: the money in the purses, the money in the bank (the
// stored balance, the household's whole money, less the purses) and the
// income and expenses of chosen months. Money operations read them before
// and after their writes and are refused when a figure would leave the
// Currency range.
struct MoneyFigures
{
    store::WideAmount purseTotal;
    store::WideAmount bank;
    // The months asked for, each with its figures.
    std::vector<QDate> monthDays;
    std::vector<MonthFigures> months;

    // `monthDays` names the months by any day in them.
    static MoneyFigures read(store::QuerySource& source, std::vector<QDate> monthDays = {});

    // True when no figure lies further outside the Currency range than the
    // same figure of `before`: a figure inside the range stays inside, one a
    // data file brought in from outside may only come closer. A month that
    // `before` lacks counts as inside.
    bool keepsInRange(const MoneyFigures& before) const;
};

} // namespace ledger
