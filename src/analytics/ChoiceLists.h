#pragma once

#include "store/Store.h"

#include <QStringList>

#include <optional>

namespace analytics {

// The entries of the analytics window's three lists: expense accounts and
// months as "code - name" in code order, and the years of the bank ledger in
// ascending order (bank operations without a date offer the year "2005").
struct ChoiceLists
{
    QStringList accounts;
    QStringList months;
    QStringList years;

    // nullopt when the data file could not be read (the store has shown why).
    static std::optional<ChoiceLists> read(store::Store& store);
};

} // namespace analytics
