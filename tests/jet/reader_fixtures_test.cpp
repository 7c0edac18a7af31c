// The reader against files made by Access and the Jet engine, checked against
// mdb-export as an independent oracle (with its known faults accounted for).
#include "support/Fixtures.h"
#include "support/ProgramFolder.h"

#include "CsvExport.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace testsupport;

namespace {

// The reference files made with a password all have the same one.
std::u16string passwordFor(const std::filesystem::path& file)
{
    return file.filename().string().find("with-password") != std::string::npos ? u"password" : u"";
}

std::vector<std::filesystem::path> fixtureFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(fixturesDir()))
        if (entry.path().extension() == ".mdb")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

#define SKIP_WITHOUT_FIXTURES()                                                                              \
    if (fixturesDir().empty())                                                                               \
    GTEST_SKIP() << "reference files (../shared/jet-fixtures) not present: skipped"

// mdbtools prints dates before 1899-12-30 and in year 9999 as day zero of
// 1900; the CSV export's own test pins how such dates print.
bool mdbtoolsCannotPrint(const jet::Value& v)
{
    const auto* d = std::get_if<jet::DateTime>(&v);
    return d && (d->days < 0 || d->days >= 2958101.0);
}

void expectSameAsMdbExport(const std::filesystem::path& file, const jet::Table& table)
{
    const std::string name = jet::toUtf8(table.name);
    const CommandResult oracle = run("mdb-export " + shellQuoted(file) + " " + shellQuoted(name));
    ASSERT_EQ(oracle.exitCode, 0) << oracle.output;
    const std::string ours = velmora::exportCsv(table);
    if (ours == oracle.output)
        return;
    const auto expected = parseCsv(oracle.output);
    const auto actual = parseCsv(ours);
    ASSERT_EQ(actual.size(), expected.size()) << file << " " << name;
    for (std::size_t r = 0; r < expected.size(); ++r) {
        ASSERT_EQ(actual[r].size(), expected[r].size()) << file << " " << name << " record " << r;
        for (std::size_t c = 0; c < expected[r].size(); ++c) {
            if (r > 0 && mdbtoolsCannotPrint(table.rows[r - 1][c]))
                continue;
            EXPECT_EQ(actual[r][c], expected[r][c])
                << file << " " << name << " record " << r << " column " << c;
        }
    }
}

} // namespace

// Each reference file as read, and as our writer writes it back, prints
// table for table what mdb-export prints of the original.
TEST(ReaderFixtures, EveryTableEqualsMdbExportAlsoWhenWrittenBack)
{
    SKIP_WITHOUT_FIXTURES();
    const velmora::test::ProgramFolder folder;
    for (const auto& file : fixtureFiles()) {
        SCOPED_TRACE(file.filename().string());
        const jet::Database db = jet::readDatabase(readBytes(file), passwordFor(file));
        const CommandResult listed = run("mdb-tables -1 " + shellQuoted(file));
        ASSERT_EQ(listed.exitCode, 0);
        std::string ourList;
        for (const jet::Table& t : db.tables)
            ourList += jet::toUtf8(t.name) + "\n";
        EXPECT_EQ(ourList, listed.output);
        const auto rewritten = folder / file.filename().string();
        store::writeFileAtomically(rewritten, jet::encodeDatabase(db));
        const jet::Database back = jet::readDatabase(readBytes(rewritten), passwordFor(file));
        EXPECT_EQ(back.version, jet::Version::Jet4);
        EXPECT_EQ(back.password, db.password);
        ASSERT_EQ(back.tables.size(), db.tables.size());
        for (std::size_t t = 0; t < db.tables.size(); ++t) {
            const jet::Table& a = db.tables[t];
            const jet::Table& b = back.tables[t];
            const CommandResult count =
                run("mdb-count " + shellQuoted(file) + " " + shellQuoted(jet::toUtf8(a.name)));
            EXPECT_EQ(std::to_string(a.rows.size()) + "\n", count.output) << jet::toUtf8(a.name);
            expectSameAsMdbExport(file, a);
            EXPECT_TRUE(b.name == a.name && b.rows == a.rows) << jet::toUtf8(a.name);
            EXPECT_TRUE(std::ranges::equal(b.columns, a.columns, {}, &jet::Column::type, &jet::Column::type));
            EXPECT_GE(b.lastAutoNumber, a.lastAutoNumber);
            expectSameAsMdbExport(rewritten, a);
        }
    }
}
