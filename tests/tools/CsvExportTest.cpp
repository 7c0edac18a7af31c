#include "CsvExport.h"

#include <gtest/gtest.h>

#include <cstdint>

using jet::Column;
using jet::ColumnType;
using jet::Value;

namespace {

// The CSV of a one-column table holding just `value`, without header and newline.
std::string field(ColumnType type, const Value& value)
{
    jet::Table table;
    table.name = u"T";
    table.columns = {type == ColumnType::Text ? Column::text(u"C", 255) : Column::ofType(u"C", type)};
    table.rows = {{value}};
    const std::string csv = velmora::exportCsv(table);
    return csv.substr(2, csv.size() - 3);
}

} // namespace

// Every cell of the tables the writer's and reader's tests make is compared
// with mdb-export, apart from what mdb-export prints otherwise; that is pinned
// here. GUIDs and binary data print quoted, binary as it is with its quote
// bytes doubled.
TEST(CsvExport, GuidsAndBinaryValues)
{
    struct Case
    {
        ColumnType type;
        Value value;
        std::string csv;
    };
    const jet::Bytes bytes{'B', 'M', 0x00, '"', 0xFF, '\n'};
    const Case cases[] = {
        {ColumnType::Guid,
         jet::Guid{{0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                    0x88}},
         "\"{12345678-9ABC-DEF0-1122-334455667788}\""},
        {ColumnType::Ole, bytes, std::string("\"BM\0\"\"\xFF\n\"", 9)},
        // A zero-length OLE value keeps its quotes; zero-length binary prints like Null.
        {ColumnType::Ole, jet::Bytes{}, "\"\""},
        {ColumnType::Binary, jet::Bytes{}, ""},
        {ColumnType::Ole, jet::Null{}, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(field(c.type, c.value), c.csv) << jet::typeName(c.type);
}

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
        {45000 + (22 * 3600 + 40 * 60 + 30.999) * seconds, "\"03/15/23 22:40:31\""},
        {45000 + (23 * 3600 + 59 * 60 + 59.6) * seconds, "\"03/16/23 00:00:00\""},
        // Before 1899-12-30 the time of day is the fraction's magnitude.
        {-1.25, "\"12/29/99 06:00:00\""},
        {-1 - (86399.7 * seconds), "\"12/30/99 00:00:00\""},
        {-304324 - 0.5, "\"10/14/66 12:00:00\""}, // 14.10.1066
        {2958465 + 0.5, "\"12/31/99 12:00:00\""}, // 31.12.9999
    };
    for (const Case& c : cases)
        EXPECT_EQ(field(ColumnType::DateTime, jet::DateTime{c.days}), c.csv) << c.days;
}
