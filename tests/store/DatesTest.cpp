#include "store/Dates.h"
#include "store/JetDateText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace store;

TEST(Dates, ParseAcceptsTheThreeTypedForms)
{
    struct Case
    {
        const char* typed;
        QDate date; // invalid: refused
    };
    const Case cases[] = {
        {"5.1.2026", QDate(2026, 1, 5)},
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
        {"٥.١.٢٠٢٦", QDate()},
    };
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
    const Case cases[] = {
        {0, "1899-12-30"},
        {2.5, "1900-01-01 12:00:00"},
        {-1.25, "1899-12-29 06:00:00"},
        {46027 + 45296.0 / 86400, "2026-01-05 12:34:56"},
        {45000.999999999, "2023-03-16"}, // rounds to the next midnight
        {-657434, "0100-01-01"},
        {2958465.5, "9999-12-31 12:00:00"},
        {-657435, nullptr},
        {2958466, nullptr},
        {std::numeric_limits<double>::quiet_NaN(), nullptr},
        {std::numeric_limits<double>::infinity(), nullptr},
    };
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
