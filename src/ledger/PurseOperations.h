#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <functional>

namespace ledger {

enum class PurseDirection
{
    PutIn,
    TakeOut,
};

// Money moved between the bank and a purse. Only the purse's row changes: the
// stored balance is the whole money, bank and purses together, so the money
// just changes sides between "В банке" and "В кошельках". A purse may go
// below zero; a purse without a row counts as empty and gets one.
class PurseOperations
{
public:
    explicit PurseOperations(store::Store& store) : m_store(store) {}

    // The purse's balance in the file moves by the typed amount, rounded to
    // kopecks as a bank operation's amount is. `beforeSave` runs once the new
    // row is in place and before the file is written: the window confirms
    // there, so the confirmation comes before the new balance reaches the file.
    store::Outcome move(int purseCode, store::Amount amount, PurseDirection direction,
                        const std::function<void()>& beforeSave = {});

private:
    store::Store& m_store;
};

} // namespace ledger
