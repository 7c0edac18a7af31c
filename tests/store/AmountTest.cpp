#include "Amount.h"

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

TEST(Amount, ArithmeticStaysInsideTheCurrencyRange)
{
    const Amount a = Amount::fromUnits(123'456);
    const Amount b = Amount::fromUnits(-7);
    EXPECT_EQ((a + b).units(), 123'449);
    EXPECT_EQ((a - b).units(), 123'463);
    EXPECT_EQ((-a).units(), -123'456);
    EXPECT_THROW(Amount::fromUnits(kMax) + Amount::fromUnits(1), std::overflow_error);
    EXPECT_THROW(Amount::fromUnits(kMin) - Amount::fromUnits(1), std::overflow_error);
    EXPECT_THROW(-Amount::fromUnits(kMin), std::overflow_error);
}

TEST(Amount, FromStoredValues)
{
    EXPECT_EQ(Amount::fromStored(QVariant()).units(), 0);
    EXPECT_EQ(Amount::fromStored(QVariant(qlonglong{-25'000})).units(), -25'000);
    EXPECT_EQ(Amount::fromStored(QVariant(7)).units(), 7);
    EXPECT_EQ(Amount::fromStored(QVariant::fromValue(Amount::fromUnits(99))).units(), 99);
    EXPECT_THROW(Amount::fromStored(QVariant(QStringLiteral("12,5"))), std::invalid_argument);
}
