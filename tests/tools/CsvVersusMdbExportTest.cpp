#include "ChildProcess.h"
#include "TempFolder.h"

#include "jet/CsvExport.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "jet/Writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <regex>
#include <set>

namespace {

const std::filesystem::path kFixtures = std::filesystem::path(VELMORA_SHARED_DIR) / "jet-fixtures";

using Record = std::vector<std::string>;

// Splits mdb-export's CSV into records of raw fields (quotes kept), honouring
// quoted line breaks.
std::vector<Record> records(const std::string& csv)
{
    std::vector<Record> result(1);
    std::string field;
    bool quoted = false;
    for (std::size_t i = 0; i < csv.size(); ++i) {
        const char c = csv[i];
        if (c == '"')
            quoted = !quoted;
        if (!quoted && (c == ',' || c == '\n')) {
            result.back().push_back(std::move(field));
            field.clear();
            if (c == '\n')
                result.emplace_back();
            continue;
        }
        field += c;
    }
    result.pop_back();
    return result;
}

// mdbtools prints dates before 1899-12-30 and after 4637-11-26 (a million
// days) as day 0 of 1900.
bool misprintedByMdbTools(const jet::Value& value)
{
    const auto* date = std::get_if<jet::DateTime>(&value);
    return date && (date->days < 0 || date->days > 1e6);
}

void compareWithMdbExport(const std::filesystem::path& file, const jet::Table& table)
{
    const std::string ours = jet::exportCsv(table);
    const auto theirs = velmora::test::runProgram({"mdb-export", file.string(), jet::toUtf8(table.name)});
    ASSERT_EQ(theirs.exitCode, 0) << theirs.err;
    std::set<std::pair<std::size_t, std::size_t>> skipped;
    for (std::size_t r = 0; r < table.rows.size(); ++r)
        for (std::size_t c = 0; c < table.rows[r].size(); ++c)
            if (misprintedByMdbTools(table.rows[r][c]))
                skipped.insert({r + 1, c});
    if (skipped.empty()) {
        EXPECT_EQ(ours, theirs.out);
        return;
    }
    const std::vector<Record> mine = records(ours), reference = records(theirs.out);
    ASSERT_EQ(mine.size(), reference.size());
    const std::regex realDate(R"("(0[1-9]|1[0-2])/(0[1-9]|[12]\d|3[01])/\d\d \d\d:\d\d:\d\d")");
    for (std::size_t r = 0; r < mine.size(); ++r) {
        ASSERT_EQ(mine[r].size(), reference[r].size());
        for (std::size_t c = 0; c < mine[r].size(); ++c) {
            if (skipped.contains({r, c}))
                EXPECT_TRUE(std::regex_match(mine[r][c], realDate)) << mine[r][c];
            else
                EXPECT_EQ(mine[r][c], reference[r][c]) << "row " << r << " column " << c;
        }
    }
}

} // namespace

TEST(CsvExport, MatchesMdbExportOnReferenceFiles)
{
    if (!std::filesystem::is_directory(kFixtures))
        GTEST_SKIP() << "reference files not found in " << kFixtures;
    struct Fixture
    {
        const char* file;
        const char16_t* password;
    };
    const Fixture fixtures[] = {
        {"V2000_with-password.mdb", u"password"},
        {"V2003_with-password.mdb", u"password"},
        {"V2003_no-password.mdb", u""},
        {"DateTestDatabase.mdb", u""},
        {"testUnicodeCompV2003.mdb", u""},
        {"overflowTestV2000.mdb", u""},
        {"db-enc-jet4.mdb", u""},
        {"testV1997-jet3.mdb", u""},
        {"nwind-jet3.mdb", u""},
    };
    for (const Fixture& fixture : fixtures) {
        const std::filesystem::path file = kFixtures / fixture.file;
        const jet::Database db = jet::readFile(file, fixture.password);
        for (const jet::Table& table : db.tables) {
            SCOPED_TRACE(std::string(fixture.file) + " " + jet::toUtf8(table.name));
            compareWithMdbExport(file, table);
        }
    }
}

// Every type our writer stores, with values at the edges of what mdb-export
// prints right. Its faults stay out (times that round up to midnight, GUIDs,
// binary data with zero bytes), except one date after 4637 that only our side
// is checked for.
TEST(CsvExport, MatchesMdbExportForEveryTypeWeWrite)
{
    using jet::Column;
    using jet::ColumnType;
    jet::Table table;
    table.name = u"Типы";
    table.columns = {
        Column::ofType(u"Bool", ColumnType::Boolean),  Column::ofType(u"Byte", ColumnType::Byte),
        Column::ofType(u"Int", ColumnType::Integer),   Column::ofType(u"Long", ColumnType::Long),
        Column::ofType(u"Cur", ColumnType::Currency),  Column::ofType(u"Sgl", ColumnType::Single),
        Column::ofType(u"Dbl", ColumnType::Double),    Column::ofType(u"Date", ColumnType::DateTime),
        Column{u"Bin", ColumnType::Binary, 16, false}, Column::text(u"Имя, \"x\"", 50),
        Column::ofType(u"Ole", ColumnType::Ole),       Column::ofType(u"Memo", ColumnType::Memo)};
    constexpr auto int64Max = std::numeric_limits<std::int64_t>::max();
    constexpr auto int64Min = std::numeric_limits<std::int64_t>::min();
    const jet::Null null;
    table.rows = {
        {true, std::int32_t{255}, std::int32_t{-32768}, std::numeric_limits<std::int32_t>::min(),
         jet::Currency{int64Max}, 0.15f, 0.1 + 0.2, jet::DateTime{45000.5}, jet::Bytes{'a', '"', 'b'},
         std::u16string(u"a\"b,c\r\nd"), jet::Bytes{'B', 'M', 0, '"', 0xFF, '\n'},
         std::u16string(u"Мир \"q\"\nline")},
        {false, std::int32_t{0}, std::int32_t{0}, std::int32_t{0}, jet::Currency{int64Min}, 123456789.0f,
         1.0 / 3, jet::DateTime{1.75}, null, std::u16string(), jet::Bytes{}, std::u16string()},
        {false, std::int32_t{1}, std::int32_t{32767}, std::int32_t{1}, jet::Currency{-5000}, -2.5f, -1e20,
         jet::DateTime{2958100.25}, jet::Bytes{}, null, null, null},
        {true, null, null, null, null, null, null, null, null, null, null, null},
    };
    jet::Database db;
    db.creationDate = 45000;
    db.tables = {table};
    velmora::test::TempFolder folder;
    const auto file = folder / "types.mdb";
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    compareWithMdbExport(file, table);
}
