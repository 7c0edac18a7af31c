#pragma once

#include "store/Outcome.h"
#include "store/Store.h"

namespace service {

// Moves every expense of one account onto another, to merge accounts. Only
// the account code of the expenses changes: no amount, date, purse or
// balance.
class ExpenseTransfer
{
public:
    explicit ExpenseTransfer(store::Store& store) : m_store(store) {}

    // Moving an account onto itself changes nothing and writes nothing.
    store::Outcome move(int fromAccount, int toAccount);

private:
    store::Store& m_store;
};

} // namespace service
