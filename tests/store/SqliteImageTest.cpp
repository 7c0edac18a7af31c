#include "SqliteImage.h"
#include "DatabaseDiff.h"
#include "StoreFolder.h"
#include "jet/Reader.h"

#include <gtest/gtest.h>

#include <filesystem>

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
        const jet::Database original = jet::readFile(folder / c.file, c.password);
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
