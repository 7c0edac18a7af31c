#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <optional>

namespace service {

// The US dollar and euro rates: Cur rows 2 and 3, column F1, in roubles,
// kept to the cent. Nothing else in the program reads them.
class CurrencyRates
{
public:
    // A rate is nullopt when its row is missing or holds no value.
    struct Rates
    {
        std::optional<store::Amount> usd;
        std::optional<store::Amount> eur;
    };

    explicit CurrencyRates(store::Store& store) : m_store(store) {}

    // nullopt when the data file could not be read.
    std::optional<Rates> read();
    // Stores both rates rounded to cents, half up. Only existing rows are
    // updated: a missing row stays missing.
    store::Outcome write(store::Amount usd, store::Amount eur);

private:
    store::Store& m_store;
};

} // namespace service
