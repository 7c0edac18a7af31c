#include "charts/ChartPeriod.h"

#include <gtest/gtest.h>

#include <string>

using charts::ChartPeriod;

TEST(ChartPeriod, DateRangesCoverWholeMonthsAndYears)
{
    struct Case
    {
        const char* month;
        const char* year;
        const char* monthFirst; // "" when the fields name no month
        const char* monthEnd;
        const char* yearFirst;
        const char* yearEnd;
    };
    const QDate today(2026, 11, 22);
    for (const Case& c : {
             Case{"3 - Март", "2005", "2005-03-01", "2005-04-01", "2005-01-01", "2006-01-01"},
             Case{" 12 ", "0999", "0999-12-01", "0999-13-01", "0999-01-01", "1000-01-01"},
             Case{"", "", "2026-11-01", "2026-12-01", "2026-01-01", "2027-01-01"},
             Case{"12", "9999", "9999-12-01", "9999-13-01", "9999-01-01", "10000-01-01"},
             Case{"- 3", "2005", "", "", "2005-01-01", "2006-01-01"},
             Case{"3", "99", "", "", "", ""},
             Case{"3", "2005 г.", "", "", "", ""},
         }) {
        const std::string where = std::string(c.month) + " / " + c.year;
        const ChartPeriod period = ChartPeriod::choose(c.month, c.year, today);
        const auto month = period.monthRange();
        EXPECT_EQ(month ? month->first.toStdString() : "", c.monthFirst) << where;
        EXPECT_EQ(month ? month->end.toStdString() : "", c.monthEnd) << where;
        const auto year = period.yearRange();
        EXPECT_EQ(year ? year->first.toStdString() : "", c.yearFirst) << where;
        EXPECT_EQ(year ? year->end.toStdString() : "", c.yearEnd) << where;
    }
}

TEST(ChartPeriod, MonthEntryWithManyCutsIsNoMonth)
{
    const ChartPeriod period = ChartPeriod::choose(QString(" -").repeated(10001), "2005", QDate(2005, 3, 1));
    EXPECT_FALSE(period.month().has_value());
    EXPECT_TRUE(period.year().has_value());
}
