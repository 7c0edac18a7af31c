#pragma once

#include <QMetaType>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <compare>
#include <cstdint>
#include <optional>

namespace store {

// A sum of money as the data file keeps it, exact: a whole number of 1/10000
// roubles, the unit of the Currency columns. Never passes through binary
// floating point. Arithmetic on amounts is done in WideAmount, which cannot
// overflow; its toAmount() says whether a result can be stored.
class Amount
{
public:
    static constexpr std::int64_t kUnitsPerRouble = 10000;

    constexpr Amount() = default;
    static constexpr Amount fromUnits(std::int64_t units)
    {
        Amount a;
        a.m_units = units;
        return a;
    }
    // Typed text: optional sign, digits, one decimal comma or point, spaces
    // around. Digits beyond the fourth decimal are cut towards minus infinity,
    // which keeps roundedToCents() of the typed value exact. Anything else, or
    // a value outside the Currency range, gives nullopt.
    static std::optional<Amount> parse(QStringView text);
    // A value as the store returns it for a Currency column or sum: whole
    // units, or Null for 0. Throws std::invalid_argument for other kinds.
    static Amount fromStored(const QVariant& value);

    constexpr std::int64_t units() const { return m_units; }
    constexpr bool isZero() const { return m_units == 0; }

    // floor(value × 100 + 0.5) / 100: halves go towards plus infinity.
    Amount roundedToCents() const;

    // "1234,5", "-12,34", "0": decimal comma, no grouping, no trailing zeros.
    QString toDisplayString() const;
    // "1 234,50 р.": cents rounded, ordinary spaces between thousands, two decimals.
    QString toBalanceString() const;
    // "12.35": as toDisplayString() with a decimal point, for logs and tests.
    QString toPlainString() const;

    // Binds as the Currency units of a statement parameter.
    operator QVariant() const { return QVariant::fromValue(*this); }

    constexpr auto operator<=>(const Amount&) const = default;

private:
    std::int64_t m_units = 0;
};

} // namespace store

Q_DECLARE_METATYPE(store::Amount)
