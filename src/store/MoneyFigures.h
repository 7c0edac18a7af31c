#pragma once

#include "Outcome.h"
#include "QuerySource.h"
#include "WideAmount.h"

#include <QDate>

#include <functional>
#include <vector>

namespace store {

class Transaction;

// Money in and out during one calendar month. Income is the sum of the signed
// bank operations, so a month with more withdrawals than deposits has a
// negative income; expenses are the sum of the booked expenses.
struct MonthFigures
{
    WideAmount income;
    WideAmount expenses;

    // The figures of the month `day` lies in.
    static MonthFigures of(QuerySource& source, QDate day);

    bool operator==(const MonthFigures&) const = default;
};

// The figures the main window shows of the money, computed wide so that any
// data file gives them: the money in the purses, the money in the bank (the
// stored balance, the household's whole money, less the purses) and the
// income and expenses of chosen months. Money operations read them before
// and after their writes and are refused when a figure would leave the
// Currency range.
struct MoneyFigures
{
    WideAmount purseTotal;
    WideAmount bank;
    // The months asked for, each with its figures.
    std::vector<QDate> monthDays;
    std::vector<MonthFigures> months;

    // `monthDays` names the months by any day in them.
    static MoneyFigures read(QuerySource& source, std::vector<QDate> monthDays = {});
    // A day in each of the two months the main window shows on `today`: its
    // month and the one before (January looks back to December).
    static std::vector<QDate> shownMonths(QDate today);

    // True when no figure lies further outside the Currency range than the
    // same figure of `before`: a figure inside the range stays inside, one a
    // data file brought in from outside may only come closer. A month that
    // `before` lacks counts as inside.
    bool keepsInRange(const MoneyFigures& before) const;

    // The refusal of an operation that would put a stored value or a figure
    // of the main window outside the Currency range.
    static Outcome outOfRange();
    // Commits `tx` unless its writes took a figure of `before` out of the
    // Currency range (or further out): then the transaction is left to roll
    // back and the operation is refused. `beforeSave` runs after that check
    // and before the file is written.
    static Outcome commitInRange(Transaction& tx, const MoneyFigures& before,
                                 const std::function<void()>& beforeSave = {});
};

} // namespace store
