#include "store/Amount.h"
#include "store/WideAmount.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <stdexcept>

using store::Amount;

namespace {

std::optional<std::string> parsed(const char* text)
{
    const std::optional<Amount> a = Amount::parse(QString::fromUtf8(text));
    return a ? std::optional(a->toPlainString().toStdString()) : std::nullopt;
}

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

} // namespace

TEST(Amount, ParseAcceptsSignDigitsAndOneDecimalSeparator)
{
    struct Case
    {
        const char* typed;
        std::optional<std::string> value;
    };
    const Case cases[] = {
        {"12,5", "12.5"},
        {"-3.25", "-3.25"},
        {"+7", "7"},
        {"  12  ", "12"},
        {"0", "0"},
        {"-0", "0"},
        {",5", "0.5"},
        {"12,", "12"},
        {"007,10", "7.1"},
        {"1,23456", "1.2345"},   // cut after four decimals ...
        {"-1,23451", "-1.2346"}, // ... towards minus infinity
        {"0,00005", "0"},
        {"-0,00005", "-0.0001"},
        {"922337203685477,5807", "922337203685477.5807"},
        {"-922337203685477,5808", "-922337203685477.5808"},
        {"922337203685477,5808", std::nullopt},
        {"922337203685477,58071", std::nullopt},
        {"-922337203685477,5809", std::nullopt},
        {"-922337203685477,58081", std::nullopt},
        {"99999999999999999999", std::nullopt},
        {"1,2,3", std::nullopt},
        {"12.5.1", std::nullopt},
        {"1,2.3", std::nullopt},
        {"", std::nullopt},
        {"   ", std::nullopt},
        {"-", std::nullopt},
        {",", std::nullopt},
        {"abc", std::nullopt},
        {"12a", std::nullopt},
        {"1 000", std::nullopt},
        {"1e5", std::nullopt},
        {"--1", std::nullopt},
        {"+-1", std::nullopt},
        {"- 1", std::nullopt},
        {"١٢", std::nullopt},   // Arabic-Indic digits
        {"１２", std::nullopt}, // full-width digits
    };
    for (const Case& c : cases)
        EXPECT_EQ(parsed(c.typed), c.value) << '"' << c.typed << '"';
}

TEST(Amount, CentRoundingIsHalfUpOnTheExactValue)
{
    struct Case
    {
        const char* typed;
        const char* rounded;
    };
    const Case cases[] = {
        {"12,345", "12.35"},
        {"-12,345", "-12.34"},
        {"10,125", "10.13"},
        {"2,675", "2.68"}, // 2.67 in binary floating point
        {"1,005", "1.01"}, // 1.00 in binary floating point
        {"0", "0"},
        {"0,0049", "0"},
        {"-0,005", "0"},
        {"-0,0051", "-0.01"},
        {"0,004999999", "0"},      // digits beyond the fourth decimal still count ...
        {"-0,005000001", "-0.01"}, // ... through the cut towards minus infinity
        {"922337203685477,5807", "922337203685477.58"},
        {"-922337203685477,5808", "-922337203685477.58"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Amount::parse(QString::fromUtf8(c.typed))->roundedToCents().toPlainString().toStdString(),
                  c.rounded)
            << c.typed;
}

TEST(Amount, RussianDisplayForms)
{
    struct Case
    {
        std::int64_t units;
        const char* display;
        const char* balance;
    };
    const Case cases[] = {
        {0, "0", "0,00 р."},
        {12'345'000, "1234,5", "1 234,50 р."},
        {-123'400, "-12,34", "-12,34 р."},
        {10'000, "1", "1,00 р."},
        {1, "0,0001", "0,00 р."},
        {50, "0,005", "0,01 р."},
        {9'990'000, "999", "999,00 р."},
        {1'000'000'000'000, "100000000", "100 000 000,00 р."},
        {-12'345'678'900, "-1234567,89", "-1 234 567,89 р."},
        {kMin, "-922337203685477,5808", "-922 337 203 685 477,58 р."},
        {kMax, "922337203685477,5807", "922 337 203 685 477,58 р."},
    };
    for (const Case& c : cases) {
        const Amount a = Amount::fromUnits(c.units);
        EXPECT_EQ(a.toDisplayString().toStdString(), c.display) << c.units;
        EXPECT_EQ(a.toBalanceString().toStdString(), c.balance) << c.units;
    }
}

TEST(WideAmount, SumsBeyondTheCurrencyRangeAreExactAndShown)
{
    using store::WideAmount;
    const WideAmount max = Amount::fromUnits(kMax);
    const WideAmount min = Amount::fromUnits(kMin);
    struct Case
    {
        WideAmount value;
        const char* display;
        const char* balance;
        std::optional<std::int64_t> stored;
        const char* excess;
    };
    const Case cases[] = {
        {max, "922337203685477,5807", "922 337 203 685 477,58 р.", kMax, "0"},
        {min, "-922337203685477,5808", "-922 337 203 685 477,58 р.", kMin, "0"},
        {max + Amount::fromUnits(1), "922337203685477,5808", "922 337 203 685 477,58 р.", std::nullopt,
         "0.0001"},
        {min - Amount::fromUnits(1), "-922337203685477,5809", "-922 337 203 685 477,58 р.", std::nullopt,
         "0.0001"},
        {-min, "922337203685477,5808", "922 337 203 685 477,58 р.", std::nullopt, "0.0001"},
        {max + max + max, "2767011611056432,7421", "2 767 011 611 056 432,74 р.", std::nullopt,
         "1844674407370955.1614"},
        {min + min - max, "-2767011611056432,7423", "-2 767 011 611 056 432,74 р.", std::nullopt,
         "1844674407370955.1615"},
        {max - max, "0", "0,00 р.", 0, "0"},
        {WideAmount::fromUnits(WideAmount::Units(kMax) * 10000 + 5000), "9223372036854775807,5",
         "9 223 372 036 854 775 807,50 р.", std::nullopt, "9222449699651090329.9193"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.toDisplayString().toStdString(), c.display);
        EXPECT_EQ(c.value.toBalanceString().toStdString(), c.balance) << c.display;
        EXPECT_EQ(c.value.toAmount() ? std::optional(c.value.toAmount()->units()) : std::nullopt, c.stored)
            << c.display;
        EXPECT_EQ(c.value.excess().toPlainString().toStdString(), c.excess) << c.display;
    }
    EXPECT_LT(min - max, min);
    EXPECT_GT(max + Amount::fromUnits(1), max);
    EXPECT_EQ((max + max).roundedToCents().toPlainString(), QStringLiteral("1844674407370955.16"));
}

TEST(Amount, FromStoredValues)
{
    EXPECT_EQ(Amount::fromStored(QVariant()).units(), 0);
    EXPECT_EQ(Amount::fromStored(QVariant(qlonglong{-25'000})).units(), -25'000);
    EXPECT_EQ(Amount::fromStored(QVariant(7)).units(), 7);
    EXPECT_EQ(Amount::fromStored(QVariant::fromValue(Amount::fromUnits(99))).units(), 99);
    EXPECT_THROW(Amount::fromStored(QVariant(QStringLiteral("12,5"))), std::invalid_argument);
    // A sum beyond 64 bits comes as its 16 bytes.
    const store::WideAmount::Units beyond = store::WideAmount::Units(kMax) * 3;
    const QByteArray bytes(reinterpret_cast<const char*>(&beyond), sizeof beyond);
    EXPECT_EQ(store::WideAmount::fromStored(bytes).units(), beyond);
    EXPECT_EQ(store::WideAmount::fromStored(QVariant(qlonglong{-5})).units(), -5);
    EXPECT_THROW(store::WideAmount::fromStored(QByteArray("short")), std::invalid_argument);
}
