#pragma once

#include "store/Outcome.h"
#include "store/Store.h"

namespace service {

// Empties the data file for a fresh start: every operation, both catalogues
// and the purses go, the balance becomes 0 and the backup date is forgotten.
// The password, the currency rates, the month names and the backup file
// itself stay.
class Clearing
{
public:
    explicit Clearing(store::Store& store) : m_store(store) {}

    store::Outcome clearAll();

private:
    store::Store& m_store;
};

} // namespace service
