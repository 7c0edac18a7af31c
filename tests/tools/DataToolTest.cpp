#include "ChildProcess.h"
#include "SampleData.h"

#include "support/ProgramFolder.h"

#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "store/RegularFile.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

using velmora::test::ProgramFolder;
using velmora::test::ProgramResult;
using velmora::test::runProgram;

namespace {

ProgramResult tool(std::vector<std::string> args)
{
    args.insert(args.begin(), VELMORA_DATA_TOOL);
    return runProgram(args);
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
        velmora::SampleOptions options;
        options.years = c.years;
        options.opsPerMonth = c.opsPerMonth;
        options.seed = static_cast<std::uint64_t>(c.seed);
        options.lastDay = std::chrono::sys_days{std::chrono::year{2024} / 2 / 29};
        const velmora::SampleHistory history = velmora::makeSampleHistory(options);
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
