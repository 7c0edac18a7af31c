#include "WideAmount.h"

#include <QByteArray>

#include <cstring>
#include <limits>
#include <stdexcept>

namespace store {

namespace {

using Units = WideAmount::Units;
using Magnitude = unsigned __int128;

constexpr Units kHighest = std::numeric_limits<std::int64_t>::max();
constexpr Units kLowest = std::numeric_limits<std::int64_t>::min();
constexpr int kDecimals = 4;

QString decimalDigits(Magnitude value)
{
    QString digits;
    do {
        digits.prepend(QLatin1Char(static_cast<char>('0' + static_cast<int>(value % 10))));
        value /= 10;
    } while (value != 0);
    return digits;
}

} // namespace

WideAmount WideAmount::fromStored(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QByteArray>()) {
        const QByteArray bytes = value.toByteArray();
        if (bytes.size() != sizeof(Units))
            throw std::invalid_argument("WideAmount::fromStored: not a wide sum");
        Units units = 0;
        std::memcpy(&units, bytes.constData(), sizeof units);
        return fromUnits(units);
    }
    return Amount::fromStored(value);
}

std::optional<Amount> WideAmount::toAmount() const
{
    if (m_units < kLowest || m_units > kHighest)
        return std::nullopt;
    return Amount::fromUnits(static_cast<std::int64_t>(m_units));
}

WideAmount WideAmount::excess() const
{
    if (m_units > kHighest)
        return fromUnits(m_units - kHighest);
    if (m_units < kLowest)
        return fromUnits(kLowest - m_units);
    return {};
}

double WideAmount::toRoubles() const
{
    return static_cast<double>(m_units) / Amount::kUnitsPerRouble;
}

WideAmount WideAmount::roundedToCents() const
{
    constexpr Units unitsPerCent = Amount::kUnitsPerRouble / 100;
    Units cents = m_units / unitsPerCent;
    Units rest = m_units % unitsPerCent;
    if (rest < 0) { // floor division
        --cents;
        rest += unitsPerCent;
    }
    if (2 * rest >= unitsPerCent)
        ++cents;
    return fromUnits(cents * unitsPerCent);
}

QString WideAmount::format(QChar decimalPoint, int minDecimals, bool grouped) const
{
    const Magnitude magnitude = m_units < 0 ? Magnitude(0) - Magnitude(m_units) : Magnitude(m_units);
    QString whole = decimalDigits(magnitude / Amount::kUnitsPerRouble);
    if (grouped)
        for (qsizetype i = whole.size() - 3; i > 0; i -= 3)
            whole.insert(i, QLatin1Char(' '));
    QString fraction =
        decimalDigits(magnitude % Amount::kUnitsPerRouble).rightJustified(kDecimals, QLatin1Char('0'));
    while (fraction.size() > minDecimals && fraction.endsWith(QLatin1Char('0')))
        fraction.chop(1);
    QString result = m_units < 0 ? QStringLiteral("-") + whole : whole;
    if (!fraction.isEmpty())
        result += decimalPoint + fraction;
    return result;
}

QString WideAmount::toDisplayString() const
{
    return format(QLatin1Char(','), 0, false);
}

QString WideAmount::toBalanceString() const
{
    return roundedToCents().format(QLatin1Char(','), 2, true) + QStringLiteral(" р.");
}

QString WideAmount::toPlainString() const
{
    return format(QLatin1Char('.'), 0, false);
}

} // namespace store
