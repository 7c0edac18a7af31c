#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"
#include "store/WideAmount.h"

#include <QDate>
#include <QString>

namespace ledger {

// One expense as the window gives it: paid from a purse, booked to an account.
struct Expense
{
    QDate date;
    int account = 0;
    store::Amount amount; // as typed
    QString name;
    QString note;
    int purse = 0;
};

// After the booking: the purse's money and the money of all purses.
struct BookedExpense
{
    store::Amount purseBalance;
    store::WideAmount purseTotal;
};

// Expenses: a Bills row with the amount rounded to kopecks, and the stored
// balance and the purse both lowered by exactly that row's amount. The money
// in the bank (whole money less the purses) does not move. Neither balance is
// kept from going below zero, and a negative expense raises both. The purse's
// balance is read in the same transaction, so a balance changed by another
// copy of the program since the purse was opened is not overwritten. A name
// or note longer than its column holds is refused.
class Expenses
{
public:
    explicit Expenses(store::Store& store) : m_store(store) {}

    store::Result<BookedExpense> book(const Expense& expense);

private:
    store::Store& m_store;
};

} // namespace ledger
