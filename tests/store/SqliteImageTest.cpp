#include "store/SqliteImage.h"
#include "StoreFolder.h"
#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/DatabaseDiff.h"
#include "support/Fixtures.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

using store::SqliteImage;

// Real files written by Access and the Jet engine, with every column type,
// dates from the year 632 to 9999, memos, OLE pictures and Cyrillic, must come
// out of the store's SQLite tables exactly as they went in.
TEST(SqliteImage, ReferenceFilesComeBackUnchanged)
{
    const std::filesystem::path folder = std::filesystem::path(VELMORA_SHARED_DIR) / "jet-fixtures";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << "no reference files in " << folder << " (the shared folder is not present)";
    struct Case
    {
        const char* file;
        std::u16string password;
    };
    const Case cases[] = {
        {"V2000_with-password.mdb", u"password"},
        {"DateTestDatabase.mdb", u""},
        {"testUnicodeCompV2003.mdb", u""},
        {"overflowTestV2000.mdb", u""},
        {"db-enc-jet4.mdb", u""},
        {"testV1997-jet3.mdb", u""},
        {"nwind-jet3.mdb", u""},
    };
    for (const Case& c : cases) {
        const jet::Database original = jet::readDatabase(testsupport::readBytes(folder / c.file), c.password);
        const SqliteImage image(original);
        EXPECT_EQ(store::firstDifference(original, image.dump()), "") << c.file;
    }
}

namespace {

void run(SqliteImage& image, const std::string& sql)
{
    SQLite::Statement& statement = image.statement(sql);
    const store::StatementScope scope(statement);
    while (statement.executeStep()) {
    }
}

} // namespace

// A save reads back only the tables the transaction wrote; what it hands to
// the encoder must still be exactly what SQLite holds.
TEST(SqliteImage, ContentsFollowEveryWriteAndRollBack)
{
    const jet::Database original = store::test::sampleDatabase();
    SqliteImage image(original);
    const std::vector<std::string> writes = {
        "INSERT INTO Bank (F1, F2, F3) VALUES ('2026-01-05', 10000, 'a')", // numbered by the trigger
        "UPDATE Tech SET F2 = F2 + 1 WHERE F0 = 'OSTATOK'",
        "DELETE FROM Purse", // SQLite's truncation shortcut
        "insert into bills_dict (F0, F1) values (3, 'Связь')",
    };
    image.begin();
    for (const std::string& sql : writes)
        run(image, sql);
    EXPECT_EQ(store::firstDifference(image.dump(), image.contents()), "");
    image.rollback();
    EXPECT_EQ(store::firstDifference(original, image.contents()), "");

    // The same statements again, now from the cache, and committed.
    image.begin();
    for (const std::string& sql : writes)
        run(image, sql);
    run(image, "SELECT * FROM Mon");
    const jet::Database written = image.contents();
    image.commit();
    EXPECT_EQ(store::firstDifference(image.dump(), written), "");
    EXPECT_EQ(store::firstDifference(written, image.contents()), "");
    EXPECT_EQ(written.table(u"Bank")->lastAutoNumber, 1);
    EXPECT_TRUE(written.table(u"Purse")->rows.empty());
}

// Tables that only got new rows are saved by reading just those rows; any
// write that touches an older row, or a row slipped in before the last one
// kept, reads the table again. Either way the contents equal SQLite's.
TEST(SqliteImage, NewRowsAreAppendedAndEveryOtherWriteReadsTheTableAgain)
{
    SqliteImage image(store::test::sampleDatabase());
    const auto transaction = [&](const std::vector<std::string>& writes, bool commit) {
        image.begin();
        for (const std::string& sql : writes)
            run(image, sql);
        const std::string difference = store::firstDifference(image.dump(), image.contents());
        commit ? image.commit() : image.rollback();
        return difference;
    };
    const std::string insert = "INSERT INTO Bank (F1, F2, F3) VALUES ('2026-01-05', 10000, 'a')";
    struct Case
    {
        const char* what;
        std::vector<std::string> writes;
    };
    const Case cases[] = {
        {"numbered inserts", {insert, insert, "INSERT INTO Bills_Dict VALUES (7, 'Связь')"}},
        {"an older row updated", {insert, "UPDATE Bank SET F3 = 'b' WHERE F0 = 1"}},
        {"a row moved past the end", {"UPDATE Bank SET rowid = rowid + 1000 WHERE F0 = 2"}},
        {"the newest row deleted", {insert, "DELETE FROM Bank WHERE F0 = (SELECT max(F0) FROM Bank)"}},
        {"every row deleted", {"DELETE FROM Bills_Dict", "INSERT INTO Bills_Dict VALUES (1, 'x')"}},
        {"a row put before the last",
         {"INSERT INTO Bank (rowid, F1, F2, F3) VALUES (2, '2026-01-01', 5, 'c')"}},
        {"inserts after an explicit row", {insert}},
    };
    for (const Case& c : cases) {
        const jet::Database before = image.dump();
        EXPECT_EQ(transaction(c.writes, false), "") << c.what;
        EXPECT_EQ(store::firstDifference(before, image.contents()), "") << "after the rollback of " << c.what;
        EXPECT_EQ(transaction(c.writes, true), "") << c.what;
        EXPECT_EQ(store::firstDifference(image.dump(), image.contents()), "")
            << "after the commit of " << c.what;
    }

    // Contents asked for twice in one transaction, then rolled back.
    const jet::Database before = image.dump();
    image.begin();
    run(image, insert);
    image.contents();
    run(image, insert);
    run(image, "UPDATE Bank SET F2 = 1 WHERE F0 = 1");
    EXPECT_EQ(store::firstDifference(image.dump(), image.contents()), "");
    run(image, insert);
    EXPECT_EQ(store::firstDifference(image.dump(), image.contents()), "");
    image.rollback();
    EXPECT_EQ(store::firstDifference(before, image.contents()), "");
    image.begin();
    run(image, insert);
    EXPECT_EQ(store::firstDifference(image.dump(), image.contents()), "");
    image.rollback();
}

// The check before a save compares the encoded file with what was encoded,
// row by row as it decodes.
TEST(DatabaseDiff, FileComparisonFindsTheFirstDifference)
{
    const jet::Database written = store::test::sampleDatabase();
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(written);
    EXPECT_EQ(store::firstDifferenceInFile(written, bytes), "");
    struct Case
    {
        const char* what;
        std::function<void(jet::Database&)> change;
        const char* difference;
    };
    const Case cases[] = {
        {"a value", [](jet::Database& d) { d.table(u"Purse")->rows[0][1] = jet::Currency{1}; },
         "table Purse: row 1"},
        {"a row more", [](jet::Database& d) { d.table(u"Mon")->rows.push_back(d.table(u"Mon")->rows[0]); },
         "table Mon: 12 rows instead of 13"},
        {"a row less", [](jet::Database& d) { d.table(u"Bills_Dict")->rows.pop_back(); },
         "table Bills_Dict: 2 rows instead of 1"},
        {"a counter", [](jet::Database& d) { d.table(u"Bank")->lastAutoNumber = 4; },
         "table Bank: autonumber counter"},
        {"a table more", [](jet::Database& d) { d.tables.push_back(d.tables.back()); }, "number of tables"},
        {"a table less", [](jet::Database& d) { d.tables.pop_back(); }, "number of tables"},
        {"a column", [](jet::Database& d) { d.table(u"Tech")->columns[1].length = 20; },
         "table Tech: column F1"},
    };
    for (const Case& c : cases) {
        jet::Database expected = written;
        c.change(expected);
        EXPECT_EQ(store::firstDifferenceInFile(expected, bytes), c.difference) << c.what;
    }
}
