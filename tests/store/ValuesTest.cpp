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
    const Case cases[] = {{"12,345", "12.35"},
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
                          {"-922337203685477,5808", "-922337203685477.58"}};
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
    const Case cases[] = {{0, "0", "0,00 р."},
                          {12'345'000, "1234,5", "1 234,50 р."},
                          {-123'400, "-12,34", "-12,34 р."},
                          {10'000, "1", "1,00 р."},
                          {1, "0,0001", "0,00 р."},
                          {50, "0,005", "0,01 р."},
                          {9'990'000, "999", "999,00 р."},
                          {1'000'000'000'000, "100000000", "100 000 000,00 р."},
                          {-12'345'678'900, "-1234567,89", "-1 234 567,89 р."},
                          {kMin, "-922337203685477,5808", "-922 337 203 685 477,58 р."},
                          {kMax, "922337203685477,5807", "922 337 203 685 477,58 р."}};
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
                          {min, "-922337203685477,5808", "-922 337 203 685 477,58 р.", kMin, "0"},
                          {max + Amount::fromUnits(1), "922337203685477,5808", "922 337 203 685 477,58 р.",
                           std::nullopt, "0.0001"},
                          {min - Amount::fromUnits(1), "-922337203685477,5809", "-922 337 203 685 477,58 р.",
                           std::nullopt, "0.0001"},
                          {-min, "922337203685477,5808", "922 337 203 685 477,58 р.", std::nullopt, "0.0001"},
                          {max + max + max, "2767011611056432,7421", "2 767 011 611 056 432,74 р.",
                           std::nullopt, "1844674407370955.1614"},
                          {min + min - max, "-2767011611056432,7423", "-2 767 011 611 056 432,74 р.",
                           std::nullopt, "1844674407370955.1615"},
                          {max - max, "0", "0,00 р.", 0, "0"},
                          {WideAmount::fromUnits(WideAmount::Units(kMax) * 10000 + 5000),
                           "9223372036854775807,5", "9 223 372 036 854 775 807,50 р.", std::nullopt,
                           "9222449699651090329.9193"}};
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

TEST(Dates, ParseAcceptsTheThreeTypedForms)
{
    struct Case
    {
        const char* typed;
        QDate date; // invalid: refused
    };
    const Case cases[] = {{"5.1.2026", QDate(2026, 1, 5)},
                          {"05.01.2026", QDate(2026, 1, 5)},
                          {" 05.01.2026 ", QDate(2026, 1, 5)},
                          {"05.01.26", QDate(2026, 1, 5)},
                          {"31.12.29", QDate(2029, 12, 31)},
                          {"01.01.30", QDate(1930, 1, 1)},
                          {"1.1.99", QDate(1999, 1, 1)},
                          {"29.02.2024", QDate(2024, 2, 29)},
                          {"2026-01-05", QDate(2026, 1, 5)},
                          {"0100-01-01", QDate(100, 1, 1)},
                          {"31.12.9999", QDate(9999, 12, 31)},
                          {"31.02.2026", QDate()},
                          {"29.02.2023", QDate()},
                          {"32.01.2026", QDate()},
                          {"00.01.2026", QDate()},
                          {"2026-13-01", QDate()},
                          {"2026-00-10", QDate()},
                          {"0099-12-31", QDate()},
                          {"5.1.202", QDate()},
                          {"5.1.20266", QDate()},
                          {"05.01.2026x", QDate()},
                          {"05..2026", QDate()},
                          {"5.1", QDate()},
                          {"5/1/2026", QDate()},
                          {"05-01-2026", QDate()},
                          {"2026-01-05 10:00", QDate()},
                          {"-5.1.2026", QDate()},
                          {"abc", QDate()},
                          {"", QDate()},
                          {"٥.١.٢٠٢٦", QDate()}};
    for (const Case& c : cases)
        EXPECT_EQ(parseDate(QString::fromUtf8(c.typed)).value_or(QDate()), c.date) << '"' << c.typed << '"';
}

TEST(Dates, JetDayNumbers)
{
    EXPECT_EQ(QDate(1899, 12, 30).toJulianDay(), kJetEpochJulianDay);
    struct Case
    {
        QDate date;
        double days;
    };
    for (const Case& c :
         {Case{QDate(1899, 12, 30), 0}, Case{QDate(1900, 1, 1), 2}, Case{QDate(2026, 1, 5), 46027},
          Case{QDate(100, 1, 1), -657434}, Case{QDate(9999, 12, 31), 2958465}}) {
        EXPECT_EQ(toJetDate(c.date).days, c.days) << c.days;
        EXPECT_EQ(fromJetDate(jet::DateTime{c.days}), c.date) << c.days;
    }
    // Before day 0 the time of day counts away from zero: -1.25 is 29.12.1899 06:00.
    EXPECT_EQ(fromJetDate(jet::DateTime{-1.25}), QDate(1899, 12, 29));
}

TEST(Dates, StoredTextOfJetDates)
{
    struct Case
    {
        double days;
        const char* text; // nullptr: not representable
    };
    const Case cases[] = {{0, "1899-12-30"},
                          {2.5, "1900-01-01 12:00:00"},
                          {-1.25, "1899-12-29 06:00:00"},
                          {46027 + 45296.0 / 86400, "2026-01-05 12:34:56"},
                          {45000.999999999, "2023-03-16"}, // rounds to the next midnight
                          {-657434, "0100-01-01"},
                          {2958465.5, "9999-12-31 12:00:00"},
                          {-657435, nullptr},
                          {2958466, nullptr},
                          {std::numeric_limits<double>::quiet_NaN(), nullptr},
                          {std::numeric_limits<double>::infinity(), nullptr}};
    for (const Case& c : cases) {
        const std::optional<std::string> text = jetDateToText(jet::DateTime{c.days});
        EXPECT_EQ(text, c.text ? std::optional<std::string>(c.text) : std::nullopt) << c.days;
    }
    for (const char* bad : {"2026-02-30", "2026-01-05 24:00:00", "2026-1-05", "0099-12-31",
                            "2026-01-05T10:00:00", "2026-01-05 10:00", "20260105"})
        EXPECT_FALSE(jetDateFromText(bad)) << bad;
}

TEST(Dates, StoredTextRoundTripsWholeSeconds)
{
    for (double day = -657434; day < 2958465; day += 7919) {
        for (const int seconds : {0, 1, 43200, 86399}) {
            const double days = day >= 0 ? day + seconds / 86400.0 : day - seconds / 86400.0;
            const std::optional<std::string> text = jetDateToText(jet::DateTime{days});
            ASSERT_TRUE(text) << days;
            const std::optional<jet::DateTime> back = jetDateFromText(*text);
            ASSERT_TRUE(back) << *text;
            EXPECT_EQ(back->days, days) << *text;
        }
    }
}

namespace {

const QString kMarker(QChar(2));
const QString kOtherMarker(QChar(3));

} // namespace

TEST(TextPiece, CutsAtTheFirstCharacterOfEachDelimiter)
{
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
        {QString(), QStringLiteral(" -"), 1, QString()},
        {QStringLiteral(" -5"), QStringLiteral(" -"), 1, QString()},
        {QStringLiteral(" -5"), QStringLiteral(" -"), 2, QStringLiteral("-5")},
        {QStringLiteral("a,b,,c"), QStringLiteral(","), 3, QString()},
        {QStringLiteral("a,b,,c"), QStringLiteral(","), 4, QStringLiteral("c")},
        {QStringLiteral("a,b,,c,"), QStringLiteral(","), 5, QString()},
        {QStringLiteral("abc"), QString(), 1, QStringLiteral("abc")}, // an empty delimiter does not cut
        // Occurrences overlap: after "aa" at 0 is cut, "aa" at 1 is found too.
        {QStringLiteral("aaa"), QStringLiteral("aa"), 2, QString()},
        {QStringLiteral("aaa"), QStringLiteral("aa"), 3, QStringLiteral("a")},
        // A marker written into the text completes an occurrence that starts before it.
        {QStringLiteral("aa") + kMarker, QStringLiteral("a") + kMarker, 1, QString()},
        {QStringLiteral("aa") + kMarker, QStringLiteral("a") + kMarker, 4, QString()},
        // With the marker itself as delimiter the cut is made with character 3,
        // and a character 3 already in the text cuts as well.
        {QStringLiteral("x") + kMarker + QStringLiteral("y"), kMarker, 2, QStringLiteral("y")},
        {QStringLiteral("x") + kOtherMarker + QStringLiteral("y") + kMarker + QStringLiteral("z"), kMarker, 2,
         QStringLiteral("y")},
        // A marker character in the text is a cut of its own.
        {QStringLiteral("a") + kMarker + QStringLiteral("b"), QStringLiteral(","), 2, QStringLiteral("b")},
        // A delimiter beginning with the marker must not hang.
        {QStringLiteral("x") + kMarker + kMarker + QStringLiteral("y"), kMarker + kMarker, 3,
         QStringLiteral("y")}};
    for (const Case& c : cases)
        EXPECT_EQ(textPiece(c.text, c.delimiter, c.index), c.expected)
            << c.text.toStdString() << " / " << c.delimiter.toStdString() << " / " << c.index;
}

TEST(TextPiece, NullArgumentsGiveEmptyText)
{
    EXPECT_EQ(textPiece(QVariant(), QStringLiteral(","), 1), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QVariant(), 1), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QStringLiteral(","), QVariant()), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QStringLiteral(","), QStringLiteral("2")),
              QStringLiteral("b"));
}

TEST(TextPiece, LimitsOfThePieceTable)
{
    const QString tenThousandPieces(9999, QLatin1Char(','));
    EXPECT_EQ(textPiece(tenThousandPieces + QStringLiteral("end"), QStringLiteral(","), 10000),
              QStringLiteral("end"));
    EXPECT_THROW(textPiece(tenThousandPieces + QStringLiteral(","), QStringLiteral(","), 1),
                 std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), 10001), std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), -1), std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), QStringLiteral("x")),
                 std::invalid_argument);
}

TEST(CatalogueEntry, CodeOfAnEntryChosenTypedOrPasted)
{
    const QString pairs = QStringLiteral(" -").repeated(12000);
    struct Case
    {
        QString entry;
        std::optional<int> code;
    };
    for (const Case& c :
         {Case{"3 - Питание", 3}, Case{"12 - Еда - дома", 12}, Case{"7", 7}, Case{" 7 ", 7},
          Case{"-3 - Долги", -3}, Case{"+4 - Связь", 4}, Case{"2147483647 - x", 2147483647},
          Case{"", std::nullopt}, Case{"Питание", std::nullopt}, Case{"3x - Еда", std::nullopt},
          Case{"2147483648 - Много", std::nullopt}, Case{"１２３ - Еда", std::nullopt},
          Case{"1e3 - Еда", std::nullopt}, Case{"3-Еда", std::nullopt}, Case{pairs, std::nullopt},
          Case{"5" + pairs, 5}, Case{QString(10000, u'9'), std::nullopt}})
        EXPECT_EQ(store::CatalogueEntry::codeOf(c.entry), c.code) << c.entry.left(40).toStdString();
    for (const int code : {1, -7, 2147483647, -2147483647 - 1}) {
        const QString entry = store::CatalogueEntry::format(code, QStringLiteral("Еда - дома"));
        EXPECT_EQ(store::CatalogueEntry::codeOf(entry), code) << entry.toStdString();
    }
    EXPECT_EQ(store::CatalogueEntry::format(3, QVariant()), QStringLiteral("3 - "));
}
