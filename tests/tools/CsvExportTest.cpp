#include "CsvExport.h"

#include <gtest/gtest.h>

// Every other cell the writer's and reader's tests make is compared with
// mdb-export; these are dates it cannot print and the rounding of sub-second times.
TEST(CsvExport, DatesPrintAsMonthDayTwoDigitYearAndTime)
{
    struct Case
    {
        double days;
        const char* csv;
    };
    const double seconds = 1.0 / 86400;
    const Case cases[] = {
        // The engine stores sub-second times; they round to the nearest second.
        {45000 + (22 * 3600 + 40 * 60 + 30.999) * seconds, "C\n\"03/15/23 22:40:31\"\n"},
        {45000 + (23 * 3600 + 59 * 60 + 59.6) * seconds, "C\n\"03/16/23 00:00:00\"\n"},
        // Before 1899-12-30 the time of day is the fraction's magnitude.
        {-1.25, "C\n\"12/29/99 06:00:00\"\n"},
        {-1 - (86399.7 * seconds), "C\n\"12/30/99 00:00:00\"\n"},
        {-304324 - 0.5, "C\n\"10/14/66 12:00:00\"\n"}, // 14.10.1066
        {2958465 + 0.5, "C\n\"12/31/99 12:00:00\"\n"}, // 31.12.9999
    };
    for (const Case& c : cases) {
        const jet::Table table{
            u"T", {jet::Column::ofType(u"C", jet::ColumnType::DateTime)}, {{jet::DateTime{c.days}}}, 0};
        EXPECT_EQ(velmora::exportCsv(table), c.csv) << c.days;
    }
}
