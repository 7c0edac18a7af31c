#include "ChildProcess.h"
#include "CsvExport.h"
#include "SampleData.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "store/RegularFile.h"
#include "store/Schema.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <stdexcept>
#include <sys/stat.h>

using velmora::test::ProgramFolder;
using velmora::test::ProgramResult;
using velmora::test::runProgram;
using namespace std::chrono;
using velmora::makeSampleHistory;
using velmora::SampleOptions;

namespace {

ProgramResult tool(std::vector<std::string> args)
{
    args.insert(args.begin(), VELMORA_DATA_TOOL);
    return runProgram(args);
}

SampleOptions options(int years, int opsPerMonth, std::uint64_t seed, sys_days lastDay)
{
    SampleOptions o;
    o.years = years;
    o.opsPerMonth = opsPerMonth;
    o.seed = seed;
    o.lastDay = lastDay;
    return o;
}

std::string csvOf(const jet::Database& db)
{
    std::string all;
    for (const jet::Table& table : db.tables)
        all += velmora::exportCsv(table);
    return all;
}

std::int64_t units(const jet::Value& v)
{
    return std::get<jet::Currency>(v).units;
}

// Replays the history day by day from its rows and the reported purse
// transfers: neither the bank part nor a purse ends a day below zero, and the
// stored balance and purses are what the operations add up to. Empty when all
// holds, else what is wrong first.
std::string moneyProblems(const velmora::SampleHistory& history)
{
    const jet::Database& db = history.database;
    std::map<double, std::map<std::int32_t, std::int64_t>> days; // purse 0 is the bank part
    std::int64_t balance = 0;
    for (const jet::Row& row : db.table(u"Bank")->rows) {
        days[std::get<jet::DateTime>(row[1]).days][0] += units(row[2]);
        balance += units(row[2]);
    }
    for (const jet::Row& row : db.table(u"Bills")->rows) {
        days[std::get<jet::DateTime>(row[1]).days][std::get<std::int32_t>(row[6])] -= units(row[3]);
        balance -= units(row[3]);
    }
    for (const velmora::PurseTransfer& t : history.transfers) {
        const double day = static_cast<double>(t.day.time_since_epoch().count() + 25569);
        days[day][0] -= t.units;
        days[day][t.purse] += t.units;
    }
    std::map<std::int32_t, std::int64_t> money;
    for (const auto& [day, moves] : days)
        for (const auto& [purse, delta] : moves)
            if ((money[purse] += delta) < 0)
                return "purse " + std::to_string(purse) + " below zero on day " + std::to_string(day);
    if (units(db.table(u"Tech")->rows.at(0).at(2)) != balance)
        return "the stored balance is not the sum of the operations";
    for (const jet::Row& row : db.table(u"Purse")->rows)
        if (units(row[1]) != money[std::get<std::int32_t>(row[0])])
            return "purse " + std::to_string(std::get<std::int32_t>(row[0])) + " holds another sum";
    return {};
}

} // namespace

TEST(DataTool, HelpAndBadArguments)
{
    struct Case
    {
        std::vector<std::string> args;
        int exitCode;
        bool usageOnStdout;
        const char* message;
    };
    const Case cases[] = {
        {{"--help"}, 0, true, ""},
        {{"sample", "x.mdb", "--help"}, 0, true, ""},
        {{}, 2, false, "no command"},
        {{"frobnicate", "x.mdb"}, 2, false, "unknown command 'frobnicate'"},
        {{"new"}, 2, false, "'new' takes 1 argument"},
        {{"export", "x.mdb"}, 2, false, "'export' takes 2 arguments"},
        {{"tables", "x.mdb", "--years", "2"}, 2, false, "'tables' has no option --years"},
        {{"sample", "x.mdb", "--years", "2"}, 2, false, "needs --ops-per-month"},
        {{"sample", "x.mdb", "--years", "two", "--ops-per-month", "5"},
         2,
         false,
         "--years must be a whole number"},
        {{"sample", "x.mdb", "--years=100", "--ops-per-month=834"}, 2, false, "at most 1000000 operations"},
        {{"sample", "x.mdb", "--years=1", "--ops-per-month=5", "--end=2024-02-30"}, 2, false, "--end"},
        {{"tables", "x.mdb", "--password"}, 2, false, "--password needs a value"},
    };
    for (const Case& c : cases) {
        const ProgramResult result = tool(c.args);
        const std::string& usage = c.usageOnStdout ? result.out : result.err;
        EXPECT_EQ(result.exitCode, c.exitCode) << c.message;
        EXPECT_NE(usage.find("Usage: velmora-data"), std::string::npos) << c.message;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists("x.mdb"));
}

TEST(DataTool, NewWritesThePreparedFile)
{
    const ProgramFolder folder;
    const auto file = folder / "velmora.mdb";
    const ProgramResult made = tool({"new", file.string()});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    const jet::Database db = jet::readDatabase(store::readRegularFile(file).bytes, store::kFilePassword);
    const jet::Database prepared = store::preparedDatabase(0);
    for (const jet::Table& table : prepared.tables)
        EXPECT_EQ(db.table(table.name)->rows, table.rows) << jet::toUtf8(table.name);
    std::string names;
    for (const jet::Table& table : prepared.tables)
        names += jet::toUtf8(table.name) + "\n";
    EXPECT_EQ(tool({"tables", file.string()}).out, names);
    EXPECT_EQ(tool({"export", file.string(), "Tech"}).out,
              "F0,F1,F2,F3\n\"OSTATOK\",,0.0000,\n\"BACKUP\",,,\n");
}

TEST(DataTool, SampleFilesHoldTheGeneratedHistory)
{
    const ProgramFolder folder;
    struct Case
    {
        const char* name;
        int years;
        int opsPerMonth;
        int seed;
    };
    const Case cases[] = {{"tiny.mdb", 1, 1, 1}, {"small.mdb", 2, 30, 5}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto file = folder / c.name;
        const ProgramResult made =
            tool({"sample", file.string(), "--years", std::to_string(c.years), "--ops-per-month",
                  std::to_string(c.opsPerMonth), "--seed", std::to_string(c.seed), "--end", "2024-02-29"});
        ASSERT_EQ(made.exitCode, 0) << made.err;
        const velmora::SampleHistory history = velmora::makeSampleHistory(
            options(c.years, c.opsPerMonth, static_cast<std::uint64_t>(c.seed), sys_days{2024y / 2 / 29}));
        const jet::Database db = jet::readDatabase(store::readRegularFile(file).bytes, store::kFilePassword);
        for (const jet::Table& table : history.database.tables)
            EXPECT_TRUE(db.table(table.name)->rows == table.rows) << jet::toUtf8(table.name);
    }
}

TEST(DataTool, NeverOverwritesAFile)
{
    const ProgramFolder folder;
    const auto file = folder / "velmora.mdb";
    std::ofstream(file) << "precious";
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"new", file.string()},
          std::vector<std::string>{"sample", file.string(), "--years", "1", "--ops-per-month", "3"}}) {
        const ProgramResult result = tool(args);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.err.find(file.string() + ": the file already exists"), std::string::npos)
            << result.err;
    }
    const std::vector<std::uint8_t> kept = store::readRegularFile(file).bytes;
    EXPECT_EQ(std::string(kept.begin(), kept.end()), "precious");
}

TEST(DataTool, FailuresNameTheFileAndTheCause)
{
    const ProgramFolder folder;
    const auto file = folder / "velmora.mdb";
    ASSERT_EQ(tool({"new", file.string()}).exitCode, 0);
    const auto damaged = folder / "damaged.mdb";
    std::ofstream(damaged) << std::string(8192, 'x');
    const std::string missing = (folder / "missing.mdb").string();
    const std::string fifo = (folder / "fifo.mdb").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
    const std::string notRegular = ": cannot read the file (not a regular file but a folder, device or pipe)";
    struct Case
    {
        std::vector<std::string> args;
        std::string message;
    };
    const Case cases[] = {
        {{"--password", "wrong", "tables", file.string()}, file.string() + ": wrong password"},
        {{"export", "--password=wrong", file.string(), "Bank"}, file.string() + ": wrong password"},
        {{"tables", missing}, missing + ": cannot read the file"},
        {{"export", missing, "Bank"}, missing + ": cannot read the file"},
        {{"tables", damaged.string()}, damaged.string() + ": damaged or not a Jet database"},
        {{"export", file.string(), "Banks"}, file.string() + ": no table named 'Banks'"},
        {{"tables", folder.path().toStdString()}, folder.path().toStdString() + notRegular},
        {{"export", fifo, "Bank"}, fifo + notRegular},
        {{"export", "/dev/zero", "Bank"}, "/dev/zero" + notRegular},
    };
    for (const Case& c : cases) {
        const ProgramResult result = tool(c.args);
        EXPECT_EQ(result.exitCode, 1) << c.message;
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    }
}

TEST(DataTool, FileWithoutPasswordOpensWithAnyPassword)
{
    const ProgramFolder folder;
    const auto file = folder / "open.mdb";
    ASSERT_EQ(tool({"--password", "", "new", file.string()}).exitCode, 0);
    for (const char* password : {"", "anything", "varnolit2031"}) {
        const ProgramResult result = tool({"--password", password, "export", file.string(), "Cur"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, "F0,F1\n2,0.0000\n3,0.0000\n");
    }
}

TEST(SampleData, MoneyAddsUpForEverySize)
{
    // From a single salary a month to about 100,000 operations; a history that
    // ends early in a month, on a leap day, and on the last day of a year.
    const SampleOptions cases[] = {
        options(1, 1, 1, sys_days{2024y / 3 / 14}),    options(1, 2, 2, sys_days{2024y / 1 / 1}),
        options(2, 30, 3, sys_days{2024y / 2 / 29}),   options(3, 60, 4, sys_days{2023y / 12 / 31}),
        options(10, 833, 5, sys_days{2025y / 6 / 10}), options(100, 1, 6, sys_days{2025y / 6 / 10}),
    };
    for (const SampleOptions& o : cases) {
        const velmora::SampleHistory history = makeSampleHistory(o);
        SCOPED_TRACE(std::to_string(o.years) + " years, " + std::to_string(o.opsPerMonth) + " a month");
        EXPECT_EQ(moneyProblems(history), "");
        const auto operations =
            history.database.table(u"Bank")->rows.size() + history.database.table(u"Bills")->rows.size();
        EXPECT_EQ(operations, static_cast<std::size_t>(12 * o.years * o.opsPerMonth));
    }
}

TEST(SampleData, SameSeedGivesSameHistoryOtherSeedAnother)
{
    const sys_days end{2024y / 5 / 20};
    const std::string first = csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end)));
    EXPECT_EQ(csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end))), first);
    EXPECT_NE(csvOf(velmora::makeSampleDatabase(options(2, 40, 12, end))), first);
    EXPECT_THROW(makeSampleHistory(options(0, 10, 1, end)), std::invalid_argument);
    EXPECT_THROW(makeSampleHistory(options(1, 0, 1, end)), std::invalid_argument);
}
