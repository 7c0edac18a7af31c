#pragma once

#include "store/Amount.h"
#include "store/WideAmount.h"

#include <QString>

namespace charts {

// The "расходы >" limit of the charts: an account whose sum is above it is
// drawn as a zero bar. An empty field means one hundred million roubles,
// which leaves out nothing in practice; so does a field that is no number,
// and then the user is told to type a number.
class Threshold
{
public:
    static constexpr store::Amount kNoLimit =
        store::Amount::fromUnits(100'000'000 * store::Amount::kUnitsPerRouble);

    static Threshold fromField(const QString& text);

    store::Amount value() const { return m_value; }
    // The field held something that is not a number.
    bool wasRejected() const { return m_rejected; }
    // Strictly above: a sum equal to the limit is still drawn.
    bool excludes(store::WideAmount sum) const { return sum > m_value; }

private:
    store::Amount m_value = kNoLimit;
    bool m_rejected = false;
};

} // namespace charts
