#include "Amount.h"

#include "WideAmount.h"

#include <limits>
#include <stdexcept>

namespace store {

namespace {

constexpr std::uint64_t kMaxPositive = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kMaxNegative = kMaxPositive + 1;
constexpr int kDecimals = 4;

bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// The magnitude of an unsigned decimal in units; `cut` is set when nonzero
// digits beyond the fourth decimal were dropped.
struct Magnitude
{
    std::uint64_t units = 0;
    bool cut = false;
};

std::optional<Magnitude> parseMagnitude(QStringView text)
{
    Magnitude m;
    int digits = 0;
    int decimals = -1; // -1 until the separator
    for (const QChar c : text) {
        if (c == QLatin1Char(',') || c == QLatin1Char('.')) {
            if (decimals >= 0)
                return std::nullopt;
            decimals = 0;
            continue;
        }
        if (!isAsciiDigit(c))
            return std::nullopt;
        ++digits;
        const unsigned digit = c.unicode() - '0';
        if (decimals >= kDecimals) {
            m.cut = m.cut || digit != 0;
            continue;
        }
        if (decimals >= 0)
            ++decimals;
        if (m.units > (kMaxNegative - digit) / 10)
            return std::nullopt;
        m.units = m.units * 10 + digit;
    }
    if (digits == 0)
        return std::nullopt;
    for (int d = decimals < 0 ? 0 : decimals; d < kDecimals; ++d) {
        if (m.units > kMaxNegative / 10)
            return std::nullopt;
        m.units *= 10;
    }
    return m;
}

} // namespace

std::optional<Amount> Amount::parse(QStringView text)
{
    text = text.trimmed();
    bool negative = false;
    if (!text.isEmpty() && (text.front() == QLatin1Char('-') || text.front() == QLatin1Char('+'))) {
        negative = text.front() == QLatin1Char('-');
        text = text.mid(1);
    }
    const std::optional<Magnitude> m = parseMagnitude(text);
    if (!m)
        return std::nullopt;
    if (negative) {
        const std::uint64_t magnitude = m->units + (m->cut ? 1 : 0);
        if (magnitude > kMaxNegative)
            return std::nullopt;
        return fromUnits(static_cast<std::int64_t>(0 - magnitude));
    }
    if (m->units > kMaxPositive || (m->cut && m->units == kMaxPositive))
        return std::nullopt;
    return fromUnits(static_cast<std::int64_t>(m->units));
}

Amount Amount::fromStored(const QVariant& value)
{
    if (!value.isValid() || value.isNull())
        return {};
    if (value.metaType() == QMetaType::fromType<Amount>())
        return value.value<Amount>();
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
        return fromUnits(value.toLongLong());
    default:
        throw std::invalid_argument("Amount::fromStored: not a Currency value: " +
                                    value.toString().toStdString());
    }
}

Amount Amount::roundedToCents() const
{
    constexpr std::int64_t unitsPerCent = kUnitsPerRouble / 100;
    std::int64_t cents = m_units / unitsPerCent;
    std::int64_t rest = m_units % unitsPerCent;
    if (rest < 0) { // floor division
        --cents;
        rest += unitsPerCent;
    }
    if (2 * rest >= unitsPerCent)
        ++cents;
    return fromUnits(cents * unitsPerCent);
}

QString Amount::toDisplayString() const
{
    return WideAmount(*this).toDisplayString();
}

QString Amount::toBalanceString() const
{
    return WideAmount(*this).toBalanceString();
}

QString Amount::toPlainString() const
{
    return WideAmount(*this).toPlainString();
}

} // namespace store
