#include "ChildProcess.h"
#include "SampleData.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "store/RegularFile.h"
#include "store/Schema.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

#include <fstream>
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

} // namespace

// Every command on good, missing, damaged and foreign files: what it prints,
// what it says and how it exits (2 for bad arguments, with the usage; 1 for a
// file it cannot use, printing nothing). A file is never overwritten.
TEST(DataTool, CommandsAndTheirFailures)
{
    const ProgramFolder folder;
    const std::string file = (folder / "velmora.mdb").string(), open = (folder / "open.mdb").string();
    ASSERT_EQ(tool({"new", file}).exitCode, 0);
    ASSERT_EQ(tool({"--password", "", "new", open}).exitCode, 0);
    const jet::Database made = jet::readDatabase(store::readRegularFile(file).bytes, store::kFilePassword);
    std::string names;
    for (const jet::Table& table : store::preparedDatabase(0).tables) {
        EXPECT_EQ(made.table(table.name)->rows, table.rows) << jet::toUtf8(table.name);
        names += jet::toUtf8(table.name) + "\n";
    }
    const std::string damaged = (folder / "damaged.mdb").string(),
                      precious = (folder / "precious.mdb").string();
    std::ofstream(damaged) << std::string(8192, 'x');
    std::ofstream(precious) << "precious";
    const std::string missing = (folder / "missing.mdb").string(), fifo = (folder / "fifo.mdb").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
    const std::string notRegular = ": cannot read the file (not a regular file but a folder, device or pipe)";
    struct Case
    {
        std::vector<std::string> args;
        int exitCode;
        std::string out; // what stdout holds when the command succeeds
        std::string err; // what stderr holds
    };
    const Case cases[] = {
        {{"sample", "x.mdb", "--help"}, 0, "Usage: velmora-data", ""},
        {{"tables", file}, 0, names, ""},
        {{"export", file, "Tech"}, 0, "F0,F1,F2,F3\n\"OSTATOK\",,0.0000,\n\"BACKUP\",,,\n", ""},
        {{"--password", "anything", "export", open, "Cur"}, 0, "F0,F1\n2,0.0000\n3,0.0000\n", ""},
        {{}, 2, "", "no command"},
        {{"frobnicate", "x.mdb"}, 2, "", "unknown command 'frobnicate'"},
        {{"new"}, 2, "", "'new' takes 1 argument"},
        {{"tables", "x.mdb", "--years", "2"}, 2, "", "'tables' has no option --years"},
        {{"sample", "x.mdb", "--years", "2"}, 2, "", "needs --ops-per-month"},
        {{"sample", "x.mdb", "--years=two", "--ops-per-month=5"}, 2, "", "--years must be a whole number"},
        {{"sample", "x.mdb", "--years=100", "--ops-per-month=834"}, 2, "", "at most 1000000 operations"},
        {{"sample", "x.mdb", "--years=1", "--ops-per-month=5", "--end=2024-02-30"}, 2, "", "--end"},
        {{"tables", "x.mdb", "--password"}, 2, "", "--password needs a value"},
        {{"new", precious}, 1, "", precious + ": the file already exists"},
        {{"sample", precious, "--years=1", "--ops-per-month=3"},
         1,
         "",
         precious + ": the file already exists"},
        {{"--password", "wrong", "tables", file}, 1, "", file + ": wrong password"},
        {{"tables", missing}, 1, "", missing + ": cannot read the file"},
        {{"tables", damaged}, 1, "", damaged + ": damaged or not a Jet database"},
        {{"export", file, "Banks"}, 1, "", file + ": no table named 'Banks'"},
        {{"tables", folder.path().toStdString()}, 1, "", folder.path().toStdString() + notRegular},
        {{"export", fifo, "Bank"}, 1, "", fifo + notRegular},
    };
    for (const Case& c : cases) {
        const ProgramResult result = tool(c.args);
        SCOPED_TRACE(c.out + c.err);
        EXPECT_EQ(result.exitCode, c.exitCode);
        const std::string& usageOrOutput = c.exitCode == 2 ? result.err : result.out;
        EXPECT_NE(usageOrOutput.find(c.exitCode == 2 ? "Usage: velmora-data" : c.out), std::string::npos)
            << result.out;
        EXPECT_NE(result.err.find(c.err), std::string::npos) << result.err;
        EXPECT_EQ(result.out.empty(), c.exitCode != 0);
    }
    const std::vector<std::uint8_t> kept = store::readRegularFile(precious).bytes;
    EXPECT_EQ(std::string(kept.begin(), kept.end()), "precious");
    EXPECT_FALSE(std::filesystem::exists("x.mdb"));
}

// The tool writes the history the generator makes from the seed; another seed makes another.
TEST(DataTool, SampleFilesHoldTheGeneratedHistory)
{
    const ProgramFolder folder;
    const auto file = folder / "small.mdb";
    const ProgramResult made = tool({"sample", file.string(), "--years", "2", "--ops-per-month", "30",
                                     "--seed", "5", "--end", "2024-02-29"});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    const sys_days end{2024y / 2 / 29};
    const jet::Database history = makeSampleHistory(SampleOptions{2, 30, 5, end}).database;
    const jet::Database db = jet::readDatabase(store::readRegularFile(file).bytes, store::kFilePassword);
    for (const jet::Table& table : history.tables)
        EXPECT_TRUE(db.table(table.name)->rows == table.rows) << jet::toUtf8(table.name);
    // The stored balance is what the operations add up to.
    std::int64_t balance = 0;
    for (const jet::Row& row : history.table(u"Bank")->rows)
        balance += std::get<jet::Currency>(row[2]).units;
    for (const jet::Row& row : history.table(u"Bills")->rows)
        balance -= std::get<jet::Currency>(row[3]).units;
    EXPECT_EQ(history.table(u"Tech")->rows.at(0).at(2), jet::Value(jet::Currency{balance}));
    EXPECT_EQ(history.table(u"Bank")->rows.size() + history.table(u"Bills")->rows.size(), 12u * 2 * 30);
    EXPECT_FALSE(makeSampleHistory(SampleOptions{2, 30, 6, end}).database.table(u"Bills")->rows ==
                 history.table(u"Bills")->rows);
    EXPECT_THROW(makeSampleHistory(SampleOptions{0, 10, 1, end}), std::invalid_argument);
    EXPECT_THROW(makeSampleHistory(SampleOptions{1, 0, 1, end}), std::invalid_argument);
}
