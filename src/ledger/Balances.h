#pragma once

#include "store/QuerySource.h"
#include "store/Store.h"
#include "store/WideAmount.h"

#include <QStringList>

#include <optional>

namespace ledger {

// What the main window shows of the catalogues and the money: the account and
// purse lists ("code - name", in code order), the money in the purses and the
// money in the bank (the stored balance, the household's whole money, less
// what lies in the purses).
struct Balances
{
    QStringList accountEntries;
    QStringList purseEntries;
    store::WideAmount purseTotal;
    store::WideAmount bankAmount;

    // Everything in one read of the data file; nullopt when the file could not
    // be read (the store has shown why).
    static std::optional<Balances> read(store::Store& store);
    static Balances of(store::QuerySource& source);
};

} // namespace ledger
