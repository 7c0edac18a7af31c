#pragma once

#include "Amount.h"

#include <QString>
#include <QVariant>

#include <compare>
#include <optional>

namespace store {

// A sum of money computed from stored amounts: totals over any number of
// rows and their differences. Exact, in the unit of Amount, with room far
// beyond the Currency range, so that no sum or difference the program makes
// can overflow. Whether a result may be stored again is decided once, by
// toAmount(). Shown in the same forms as Amount.
class WideAmount
{
public:
    using Units = __int128;

    constexpr WideAmount() = default;
    constexpr WideAmount(Amount amount) : m_units(amount.units()) {}
    static constexpr WideAmount fromUnits(Units units)
    {
        WideAmount a;
        a.m_units = units;
        return a;
    }
    // A value as the store returns it for a money column or a WideSum: Null
    // for 0, whole units, or the 16 bytes of a sum beyond 64 bits. Throws
    // std::invalid_argument for other kinds.
    static WideAmount fromStored(const QVariant& value);

    constexpr Units units() const { return m_units; }
    // The value as a storable Amount; nullopt outside the Currency range.
    std::optional<Amount> toAmount() const;
    // How far the value lies outside the Currency range; 0 inside it.
    WideAmount excess() const;
    // Roubles, for drawing; exact up to about 2^53 units.
    double toRoubles() const;

    // floor(value × 100 + 0.5) / 100: halves go towards plus infinity.
    WideAmount roundedToCents() const;

    // "1234,5", "-12,34", "0": decimal comma, no grouping, no trailing zeros.
    QString toDisplayString() const;
    // "1 234,50 р.": cents rounded, ordinary spaces between thousands, two decimals.
    QString toBalanceString() const;
    // "12.35": as toDisplayString() with a decimal point, for logs and tests.
    QString toPlainString() const;

    // An Amount on either side takes part as a WideAmount.
    WideAmount operator-() const { return fromUnits(-m_units); }
    friend WideAmount operator+(WideAmount a, WideAmount b) { return fromUnits(a.m_units + b.m_units); }
    friend WideAmount operator-(WideAmount a, WideAmount b) { return fromUnits(a.m_units - b.m_units); }
    WideAmount& operator+=(WideAmount other) { return *this = *this + other; }
    WideAmount& operator-=(WideAmount other) { return *this = *this - other; }
    friend constexpr bool operator==(WideAmount a, WideAmount b) { return a.m_units == b.m_units; }
    friend constexpr std::strong_ordering operator<=>(WideAmount a, WideAmount b)
    {
        return a.m_units < b.m_units   ? std::strong_ordering::less
               : a.m_units > b.m_units ? std::strong_ordering::greater
                                       : std::strong_ordering::equal;
    }

private:
    QString format(QChar decimalPoint, int minDecimals, bool grouped) const;

    Units m_units = 0;
};

} // namespace store
