#include "store/Amount.h"
#include "store/CatalogueEntry.h"
#include "store/Dates.h"
#include "store/JetDateText.h"
#include "store/TextPiece.h"
#include "store/WideAmount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>

using namespace store;

namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

} // namespace

// Parsing keeps four decimals, cut towards minus infinity; rounding to cents
// is half up on that exact value, never on a binary floating-point one.
TEST(Amount, ParseAndCentRounding)
{
    struct Case
    {
        const char* typed;
        const char* parsed; // nullptr: refused
        const char* cents = nullptr;
    };
    const Case cases[] = {
        {"  -3.25 ", "-3.25", "-3.25"},
        {"+7", "7", "7"},
        {",5", "0.5", "0.5"},
        {"12,", "12", "12"},
        {"007,10", "7.1", "7.1"},
        {"12,345", "12.345", "12.35"},
        {"-12,345", "-12.345", "-12.34"},
        {"2,675", "2.675", "2.68"}, // 2.67 in binary floating point
        {"1,005", "1.005", "1.01"}, // 1.00 in binary floating point
        {"-0,005", "-0.005", "0"},
        {"-0,0051", "-0.0051", "-0.01"},
        {"0,004999999", "0.0049", "0"},
        {"-0,00005", "-0.0001", "0"},
        {"922337203685477,5807", "922337203685477.5807", "922337203685477.58"},
        {"-922337203685477,5808", "-922337203685477.5808", "-922337203685477.58"},
        {"922337203685477,5808", nullptr},
        {"-922337203685477,58081", nullptr},
        {"99999999999999999999", nullptr},
        {"1,,5", nullptr},
        {"", nullptr},
        {"1 000", nullptr},
        {"١٢", nullptr}, // Arabic-Indic digits
    };
    for (const Case& c : cases) {
        const std::optional<Amount> a = Amount::parse(QString::fromUtf8(c.typed));
        ASSERT_EQ(a.has_value(), c.parsed != nullptr) << '"' << c.typed << '"';
        if (a) {
            EXPECT_EQ(a->toPlainString().toStdString(), c.parsed);
            EXPECT_EQ(a->roundedToCents().toPlainString().toStdString(), c.cents) << c.typed;
        }
    }
}

TEST(Amount, RussianDisplayForms)
{
    struct Case
    {
        std::int64_t units;
        const char* display;
        const char* balance;
    };
    const Case cases[] = {{0, "0", "0,00 р."},
                          {12'345'000, "1234,5", "1 234,50 р."},
                          {-123'400, "-12,34", "-12,34 р."},
                          {50, "0,005", "0,01 р."},
                          {-12'345'678'900, "-1234567,89", "-1 234 567,89 р."},
                          {kMin, "-922337203685477,5808", "-922 337 203 685 477,58 р."}};
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
    const Case cases[] = {{max, "922337203685477,5807", "922 337 203 685 477,58 р.", kMax, "0"},
                          {max + Amount::fromUnits(1), "922337203685477,5808", "922 337 203 685 477,58 р.",
                           std::nullopt, "0.0001"},
                          {-min, "922337203685477,5808", "922 337 203 685 477,58 р.", std::nullopt, "0.0001"},
                          {max + max + max, "2767011611056432,7421", "2 767 011 611 056 432,74 р.",
                           std::nullopt, "1844674407370955.1614"},
                          {min + min - max, "-2767011611056432,7423", "-2 767 011 611 056 432,74 р.",
                           std::nullopt, "1844674407370955.1615"}};
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.toDisplayString().toStdString(), c.display);
        EXPECT_EQ(c.value.toBalanceString().toStdString(), c.balance) << c.display;
        EXPECT_EQ(c.value.toAmount() ? std::optional(c.value.toAmount()->units()) : std::nullopt, c.stored)
            << c.display;
        EXPECT_EQ(c.value.excess().toPlainString().toStdString(), c.excess) << c.display;
    }
    EXPECT_LT(min - max, min);
    EXPECT_EQ((max + max).roundedToCents().toPlainString(), QStringLiteral("1844674407370955.16"));
}

// A wrong kind of value is an error, never zero; a sum beyond 64 bits comes as its 16 bytes.
TEST(Amount, FromStoredValues)
{
    EXPECT_THROW(Amount::fromStored(QVariant(QStringLiteral("12,5"))), std::invalid_argument);
    const store::WideAmount::Units beyond = store::WideAmount::Units(kMax) * 3;
    const QByteArray bytes(reinterpret_cast<const char*>(&beyond), sizeof beyond);
    EXPECT_EQ(store::WideAmount::fromStored(bytes).units(), beyond);
    EXPECT_EQ(store::WideAmount::fromStored(QVariant(qlonglong{-5})).units(), -5);
    EXPECT_THROW(store::WideAmount::fromStored(QByteArray("short")), std::invalid_argument);
}

TEST(Dates, ParseAcceptsTheThreeTypedForms)
{
    struct Case
    {
        const char* typed;
        QDate date; // invalid: refused
    };
    const Case cases[] = {{"5.1.2026", QDate(2026, 1, 5)},
                          {" 05.01.2026 ", QDate(2026, 1, 5)},
                          {"05.01.26", QDate(2026, 1, 5)},
                          {"31.12.29", QDate(2029, 12, 31)},
                          {"01.01.30", QDate(1930, 1, 1)},
                          {"2026-01-05", QDate(2026, 1, 5)},
                          {"0100-01-01", QDate(100, 1, 1)},
                          {"31.12.9999", QDate(9999, 12, 31)},
                          {"31.02.2026", QDate()},
                          {"0099-12-31", QDate()},
                          {"5.1.202", QDate()},
                          {"05..2026", QDate()},
                          {"5.1", QDate()},
                          {"05-01-2026", QDate()},
                          {"2026-01-005", QDate()},
                          {"-5.1.2026", QDate()},
                          {"٥.١.٢٠٢٦", QDate()}};
    for (const Case& c : cases)
        EXPECT_EQ(parseDate(QString::fromUtf8(c.typed)).value_or(QDate()), c.date) << '"' << c.typed << '"';
}

// Day numbers count from 30.12.1899; before day 0 the time of day counts away
// from zero (-1.25 is 29.12.1899 06:00). Stored as text, a time of day shows
// to the second; 100 to 9999 are the years a file may hold.
TEST(Dates, JetDayNumbersAndTheirStoredText)
{
    EXPECT_EQ(QDate(1899, 12, 30).toJulianDay(), kJetEpochJulianDay);
    struct Case
    {
        double days;
        QDate date;
        const char* text; // nullptr: not representable
    };
    const Case cases[] = {{0, QDate(1899, 12, 30), "1899-12-30"},
                          {2.5, QDate(1900, 1, 1), "1900-01-01 12:00:00"},
                          {-1.25, QDate(1899, 12, 29), "1899-12-29 06:00:00"},
                          {46027 + 45296.0 / 86400, QDate(2026, 1, 5), "2026-01-05 12:34:56"},
                          {45000.999999999, QDate(2023, 3, 15), "2023-03-16"}, // rounds to the next midnight
                          {-657434, QDate(100, 1, 1), "0100-01-01"},
                          {2958465.5, QDate(9999, 12, 31), "9999-12-31 12:00:00"},
                          {2958465.999999999, QDate(9999, 12, 31), nullptr}, // rounds into the year 10000
                          {-657435, QDate(99, 12, 31), nullptr},
                          {2958466, QDate(10000, 1, 1), nullptr}};
    for (const Case& c : cases) {
        EXPECT_EQ(fromJetDate(jet::DateTime{c.days}), c.date) << c.days;
        EXPECT_EQ(toJetDate(c.date).days, std::trunc(c.days));
        EXPECT_EQ(jetDateToText(jet::DateTime{c.days}),
                  c.text ? std::optional<std::string>(c.text) : std::nullopt)
            << c.days;
    }
    EXPECT_FALSE(jetDateToText(jet::DateTime{std::numeric_limits<double>::quiet_NaN()}));
    for (const char* bad : {"2026-02-30", "2026-01-05 24:00:00", "2026-1-05", "0099-12-31",
                            "2026-01-05T10:00:00", "2026-01-05 10:00", "20260105"})
        EXPECT_FALSE(jetDateFromText(bad)) << bad;
}

// The code is taken back out of a list entry by cutting at the delimiter.
TEST(TextPiece, CutsAtTheFirstCharacterOfEachDelimiterWithinTheTable)
{
    const QString marker(QChar(2));
    struct Case
    {
        QString text;
        QString delimiter;
        int index;
        QString expected;
    };
    const Case cases[] = {
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 1, QStringLiteral("12")},
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 2, QStringLiteral("- Еда")}, // the dash stays
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 3, QString()},
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 0, QString()}, // piece 0 is never filled
        {QStringLiteral("a,b,,c"), QStringLiteral(","), 4, QStringLiteral("c")},
        {QStringLiteral("abc"), QString(), 1, QStringLiteral("abc")}, // an empty delimiter does not cut
        {QStringLiteral("aaa"), QStringLiteral("aa"), 3, QStringLiteral("a")}, // occurrences overlap
        {QStringLiteral("a") + marker + QStringLiteral("b"), QStringLiteral(","), 2, QStringLiteral("b")},
        {QStringLiteral("x") + marker + marker + QStringLiteral("y"), marker + marker, 3,
         QStringLiteral("y")}};
    for (const Case& c : cases)
        EXPECT_EQ(textPiece(c.text, c.delimiter, c.index), c.expected)
            << c.text.toStdString() << " / " << c.delimiter.toStdString() << " / " << c.index;
    EXPECT_EQ(textPiece(QVariant(), QStringLiteral(","), 1), QString());
    const QString tenThousandPieces(9999, QLatin1Char(','));
    EXPECT_EQ(textPiece(tenThousandPieces + QStringLiteral("end"), QStringLiteral(","), 10000),
              QStringLiteral("end"));
    EXPECT_THROW(textPiece(tenThousandPieces + QStringLiteral(","), QStringLiteral(","), 1),
                 std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), 10001), std::out_of_range);
}

TEST(CatalogueEntry, CodeOfAnEntryChosenTypedOrPasted)
{
    const QString pairs = QStringLiteral(" -").repeated(12000);
    struct Case
    {
        QString entry;
        std::optional<int> code;
    };
    for (const Case& c : {Case{"12 - Еда - дома", 12}, Case{" 7 ", 7}, Case{"-3 - Долги", -3},
                          Case{"+4 - Связь", 4}, Case{"", std::nullopt}, Case{"3x - Еда", std::nullopt},
                          Case{"2147483648 - Много", std::nullopt}, Case{"１２３ - Еда", std::nullopt},
                          Case{"3-Еда", std::nullopt}, Case{pairs, std::nullopt}, Case{"5" + pairs, 5}})
        EXPECT_EQ(store::CatalogueEntry::codeOf(c.entry), c.code) << c.entry.left(40).toStdString();
    for (const int code : {2147483647, -2147483647 - 1})
        EXPECT_EQ(store::CatalogueEntry::codeOf(store::CatalogueEntry::format(code, "Еда - дома")), code);
    EXPECT_EQ(store::CatalogueEntry::format(3, QVariant()), QStringLiteral("3 - "));
}
