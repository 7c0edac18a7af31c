#include "store/SqliteImage.h"
#include "jet/ByteOrder.h"
#include "jet/FileImage.h"
#include "jet/ReadAhead.h"
#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/DatabaseDiff.h"
#include "store/Schema.h"
#include "store/WrittenTables.h"
#include "support/Fixtures.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <random>

using store::SqliteImage;
using Kind = jet::RowChange::Kind;

// Real files written by Access and the Jet engine, with every column type,
// dates from the year 632 to 9999, memos, OLE pictures and Cyrillic, must come
// out of the store's SQLite tables exactly as they went in.
TEST(SqliteImage, ReferenceFilesComeBackUnchanged)
{
    const std::filesystem::path folder = testsupport::fixturesDir();
    if (folder.empty())
        GTEST_SKIP() << "reference files (../shared/jet-fixtures) not present: skipped";
    struct Case
    {
        const char* file;
        std::u16string password;
    };
    const Case cases[] = {
        {"V2000_with-password.mdb", u"password"},
        {"DateTestDatabase.mdb", u""},
        {"testUnicodeCompV2003.mdb", u""},
        {"db-enc-jet4.mdb", u""},
        {"nwind-jet3.mdb", u""},
    };
    for (const Case& c : cases) {
        const jet::Database original = jet::readDatabase(testsupport::readBytes(folder / c.file), c.password);
        const SqliteImage image(original);
        EXPECT_EQ(store::firstDifference(original, image.dump()), "") << c.file;
    }
}

namespace {

// `alike` for an UPDATE whose SET takes only bound values.
void run(SqliteImage& image, const std::string& sql, std::int64_t number = 0, bool alike = false)
{
    sqlite3_stmt* statement = image.statement(sql);
    const store::StatementScope scope(statement);
    if (sqlite3_bind_parameter_count(statement) > 0)
        sqlite3_bind_int64(statement, 1, number);
    while (alike ? image.updateAlike(statement) : store::stepRow(statement)) {
    }
}

} // namespace

// A save writes the next file from the last one, reading back from SQLite
// only the rows the transaction wrote. Whatever the writes, in one
// transaction or many, committed or rolled back, the file must be byte for
// byte what encoding all of SQLite's tables gives, and pass its check.
TEST(SqliteImage, NextFileIsTheFullEncodingAfterAnyWrites)
{
    jet::Database db = velmora::test::sampleDatabase();
    for (std::int32_t i = 1; i <= 30000; ++i)
        db.tables[1].rows.push_back({i, jet::DateTime{45000}, i % 5, jet::Currency{i},
                                     u"покупка " + std::u16string(i % 7, u'ы'), std::u16string(), 1});
    // Loaded while it is decoded, the file is kept as the last one: the first save is written from it.
    std::vector<std::uint8_t> file = jet::encodeDatabase(db);
    const jet::Database decoded = jet::readDatabase(file, db.password);
    jet::ReadAhead reading(file, db.password);
    SqliteImage image(reading, file);
    EXPECT_TRUE(image.lastFile() && file.empty());
    EXPECT_EQ(store::firstDifference(decoded, image.dump()), "");
    // A file that is not byte for byte the writer's own (a page more at its end) is not kept.
    std::vector<std::uint8_t> longer = jet::encodeDatabase(db);
    longer.resize(longer.size() + 4096);
    jet::ReadAhead longerReading(longer, db.password);
    EXPECT_FALSE(SqliteImage(longerReading, longer).lastFile());
    // Those set alike (each row the same values) are patched from one row read.
    const std::string alike[] = {
        "UPDATE Bills SET F2 = ?1 % 5 WHERE F2 = (?1 + 1) % 5", // an account's expenses moved
        "UPDATE Bank SET F2 = ?1 WHERE F0 % 9 = ?1 % 9",
        "UPDATE Bills SET F4 = 'перенесено ' || ?1 WHERE F0 % 17 = ?1 % 17",
    };
    const std::string writes[] = {
        "INSERT INTO Bank (F1, F2, F3) VALUES ('2026-01-05', ?1, 'вклад ' || ?1)",
        "INSERT OR REPLACE INTO Bank (rowid, F1, F2, F3) VALUES (?1 % 40 + 1, '2026-01-01', 5, 'на место')",
        "UPDATE Bank SET F3 = F3 || ' с пометкой' WHERE F0 % 7 = ?1 % 7",
        "UPDATE Bills SET F2 = ?1 % 5 WHERE F2 = (?1 + 1) % 5", // an account's expenses moved
        "UPDATE Bills SET F3 = NULL, F1 = date(F1, '+1 day') WHERE F0 % 11 = ?1 % 11",
        "UPDATE Bills SET F3 = F0 WHERE F3 IS NULL",
        "UPDATE Bank SET F2 = F2 + 1 WHERE rowid <= 40 AND rowid % 3 = ?1 % 3",
        "UPDATE Bills SET F4 = substr(F4, 1, ?1 % 9) WHERE rowid BETWEEN ?1 % 20000 AND ?1 % 20000 + 300",
        "DELETE FROM Bank WHERE F0 % 13 = ?1 % 13",
        "DELETE FROM Bills WHERE rowid > (SELECT max(rowid) FROM Bills) - ?1 % 50",
        "DELETE FROM Bills_Dict",
        "INSERT INTO Bills_Dict VALUES (?1, 'счет ' || ?1)",
        "UPDATE Bank SET rowid = rowid + 100000 WHERE F0 = (SELECT min(F0) FROM Bank)",
        "UPDATE Bank SET F0 = F0 + 1000 WHERE rowid = (SELECT max(rowid) FROM Bank)",
        "UPDATE Tech SET F2 = F2 + ?1 WHERE F0 = 'OSTATOK'",
        // The trash: the file gets the table with its first row, then keeps it.
        "INSERT INTO Trash (F1, F3, F4, F5) VALUES ('2026-01-05 10:00:00', 'Bank', 'удалена', ?1)",
        "DELETE FROM Trash WHERE F5 % 3 = ?1 % 3",
    };
    EXPECT_EQ(image.dump().table(u"Trash"), nullptr);
    std::mt19937 random(2031);
    // Now and then an earlier file comes back (as a restore brings it) by
    // taking in the rows it holds differently; or it is taken and dropped.
    std::vector<std::uint8_t> earlier;
    int taken = 0;
    for (int step = 0; step < 80; ++step) {
        if (step % 10 == 9) {
            const jet::Database before = image.dump();
            const bool took = image.beginTaking(earlier), keep = took && step % 20 == 9;
            taken += took;
            if (took)
                keep ? image.finishTaking() : image.rollback();
            EXPECT_EQ(store::firstDifference(keep ? jet::readDatabase(earlier, store::kFilePassword) : before,
                                             image.dump()),
                      "")
                << "step " << step;
        }
        if (step % 10 == 2 && image.lastFile())
            earlier.assign(image.lastFile()->bytes().begin(), image.lastFile()->bytes().end());
        image.begin();
        for (int n = static_cast<int>(random() % 4); n >= 0; --n) {
            const std::size_t pick = random() % (std::size(writes) + std::size(alike));
            const bool setsAlike = pick >= std::size(writes);
            run(image, setsAlike ? alike[pick - std::size(writes)] : writes[pick], random() % 100'000,
                setsAlike);
        }
        const store::NextFile& next = image.nextFile();
        EXPECT_EQ(next.firstDifference(), "") << "step " << step;
        EXPECT_TRUE(std::ranges::equal(next.bytes(), jet::encodeDatabase(image.dump()))) << "step " << step;
        random() % 4 ? (void)image.commit() : image.rollback();
    }
    EXPECT_TRUE(image.lastFile() && image.dump().table(u"Trash"));
    EXPECT_GE(taken, 6);
    // Rows updated in a fixed-size column are patched; a row put in place of
    // another and then updated, and a row put in, are read whole beside them.
    image.begin();
    run(image, writes[0], 7);
    run(image, "INSERT OR REPLACE INTO Bank (rowid, F1, F2, F3) "
               "VALUES ((SELECT min(rowid) FROM Bank), '2026-01-01', 5, 'на место')");
    run(image, "UPDATE Bank SET F2 = F2 + 1");
    EXPECT_TRUE(std::ranges::equal(image.nextFile().bytes(), jet::encodeDatabase(image.dump())));
    image.commit();
    // Rows set alike beside a row written otherwise, before them or after them.
    for (const bool otherFirst : {true, false}) {
        image.begin();
        const std::string other = "UPDATE Bills SET F2 = 40 WHERE rowid = 12";
        if (otherFirst)
            run(image, other);
        run(image, "UPDATE Bills SET F2 = ?1 WHERE rowid < 10", 42, true);
        if (!otherFirst)
            run(image, other);
        EXPECT_TRUE(std::ranges::equal(image.nextFile().bytes(), jet::encodeDatabase(image.dump())))
            << otherFirst;
        image.commit();
    }
    // A row deleted since, in contents read afresh from the file, finds its place again.
    const std::vector<std::uint8_t> withRow(image.lastFile()->bytes().begin(),
                                            image.lastFile()->bytes().end());
    image.begin();
    run(image, "DELETE FROM Bills WHERE rowid = (SELECT rowid FROM Bills LIMIT 1 OFFSET 100)");
    image.nextFile();
    image.commit();
    std::vector<std::uint8_t> withoutRow(image.lastFile()->bytes().begin(), image.lastFile()->bytes().end());
    SqliteImage reread(jet::readDatabase(withoutRow, store::kFilePassword), withoutRow);
    EXPECT_TRUE(reread.beginTaking(withRow));
    // Rows alone do not make a file: the same rows with another creation date are not taken in.
    jet::Database dated = image.dump();
    dated.creationDate += 1;
    EXPECT_FALSE(image.beginTaking(jet::encodeDatabase(dated)));
}

// Bytes SQLite holds that are not UTF-8 (a code point past U+10FFFF, a lead
// byte without its follower) come back as U+FFFD, one per byte; a character
// past U+FFFF as its surrogate pair.
// A table counts as written alike only while one statement setting alike
// values wrote it and nothing else did: no write before it or after it, and
// no trigger writing the table beside it.
TEST(WrittenTables, OnlyAStatementAloneWritesATableAlike)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
    const auto exec = [&](const char* sql) {
        ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    };
    exec("CREATE TABLE t (a INTEGER, b INTEGER); CREATE TABLE u (a INTEGER);"
         "INSERT INTO t VALUES (1, 0), (2, 0), (3, 0), (4, 0); INSERT INTO u VALUES (1);"
         "CREATE TRIGGER beside AFTER UPDATE OF a ON t WHEN NEW.a = 99 BEGIN "
         "UPDATE t SET b = 1 WHERE rowid = 1; END;"
         "CREATE TRIGGER elsewhere AFTER UPDATE OF a ON t WHEN NEW.a = 98 BEGIN "
         "UPDATE u SET a = NEW.rowid; END;");
    {
        store::WrittenTables written(db, {"t", "u"});
        const auto alike = [&](const char* sql) {
            written.startAlike();
            exec(sql);
            written.endAlike(true, sqlite3_changes64(db));
        };
        alike("UPDATE t SET a = 5 WHERE rowid <= 3");
        EXPECT_TRUE(written.updatedAlike(0));
        EXPECT_FALSE(written.updatedAlike(1)) << "not written at all";
        exec("UPDATE t SET a = 6 WHERE rowid = 4");
        EXPECT_FALSE(written.updatedAlike(0)) << "written after";
        written.clearMarks();
        exec("UPDATE t SET a = 6 WHERE rowid = 4");
        alike("UPDATE t SET a = 5 WHERE rowid <= 3");
        EXPECT_FALSE(written.updatedAlike(0)) << "written before";
        written.clearMarks();
        alike("UPDATE t SET a = 99 WHERE rowid IN (2, 3)");
        EXPECT_FALSE(written.updatedAlike(0)) << "a trigger wrote beside it";
        written.clearMarks();
        alike("UPDATE t SET a = 98 WHERE rowid = 2"); // one row each, u's by a trigger
        EXPECT_FALSE(written.updatedAlike(0) || written.updatedAlike(1)) << "a trigger wrote another table";
        written.clearMarks();
        alike("UPDATE u SET a = 7");
        alike("UPDATE t SET a = 7 WHERE rowid = 2");
        EXPECT_TRUE(written.updatedAlike(0) && written.updatedAlike(1)) << "each alone in its table";
    }
    sqlite3_close(db);
}

TEST(SqliteImage, TextThatIsNotUtf8ComesBackAsReplacementCharacters)
{
    SqliteImage image(velmora::test::sampleDatabase());
    image.begin();
    run(image, "UPDATE Bills_Dict SET F1 = CAST(X'F09F9880F4908080C328' AS TEXT) WHERE F0 = 1");
    EXPECT_EQ(image.dump().table(u"Bills_Dict")->rows[0][1],
              jet::Value(std::u16string(u"\U0001F600\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD(")));
    image.rollback();
}

// The check before a save decodes the whole encoded file row by row; the
// check of a file written from the last one decodes only the rows that
// changed and compares the others as bytes. Both must find the first way the
// file differs from what it was written for; the save only meets equal ones.
TEST(DatabaseDiff, FileComparisonsFindTheFirstDifference)
{
    jet::Database db = velmora::test::sampleDatabase();
    for (std::int32_t i = 1; i <= 400; ++i)
        db.tables[0].rows.push_back({i, jet::DateTime{45000}, jet::Currency{i}, std::u16string(u"вклад")});
    db.tables[0].lastAutoNumber = 400;
    const jet::FileImage previous(db);
    EXPECT_EQ(store::firstDifferenceInFile(db, previous.bytes()), "");
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
        {"a counter", [](jet::Database& d) { d.table(u"Bank")->lastAutoNumber = 4; },
         "table Bank: autonumber counter"},
        {"a table less", [](jet::Database& d) { d.tables.pop_back(); }, "number of tables"},
        {"a column", [](jet::Database& d) { d.table(u"Tech")->columns[1].length = 20; },
         "table Tech: column F1"},
    };
    for (const Case& c : cases) {
        jet::Database expected = db;
        c.change(expected);
        EXPECT_EQ(store::firstDifferenceInFile(expected, previous.bytes()), c.difference) << c.what;
    }

    std::vector<jet::TableChanges> changes(db.tables.size());
    changes[0].rows = {{5, Kind::Replace, {std::int32_t{6}, jet::Null{}, jet::Currency{7}, jet::Null{}}},
                       {100, Kind::Remove, {}},
                       {400, Kind::Insert, {std::int32_t{500}, jet::Null{}, jet::Null{}, jet::Null{}}}};
    changes[0].lastAutoNumber = 500;
    // Two months' numbers patched: the page of the table holds no other change.
    const std::size_t mon = static_cast<std::size_t>(db.table(u"Mon") - db.tables.data());
    changes[mon].rows = {{3, Kind::Patch, {std::int32_t{40}}}, {4, Kind::Patch, {jet::Null{}}}};
    changes[mon].patchedColumns = {0};
    for (std::int32_t i = 1; i <= 3000; ++i) // enough to be checked on two threads
        changes[1].rows.push_back({0,
                                   Kind::Insert,
                                   {i, jet::DateTime{45000}, 1, jet::Currency{i}, std::u16string(u"покупка"),
                                    std::u16string(), 1}});
    changes[1].lastAutoNumber = 3000;
    jet::Table notes{u"Notes", {jet::Column::ofType(u"Note", jet::ColumnType::Text)}, {}, 0};
    notes.columns[0].length = 100;
    changes.push_back({{{0, Kind::Insert, {std::u16string(u"заметка")}}}, 0, true, {}, {}}); // a table added
    const jet::FileImage next(previous, changes, std::span(&notes, 1));
    std::vector<std::uint8_t> bytes(next.bytes().begin(), next.bytes().end());
    const auto rowStart = [&](std::size_t table, int row) {
        const std::size_t page = std::size_t(next.dataPages(table)[0]) * 4096;
        return page + (jet::le::u16(&bytes[page + 14 + 2 * row]) & 0x1FFF);
    };
    struct ChangedCase
    {
        const char* what;
        std::function<void(std::vector<jet::TableChanges>&)> change;
        const char* difference;
    };
    const ChangedCase changedCases[] = {
        {"no change", [](auto&) {}, ""},
        {"a value", [](auto& c) { c[0].rows[0].row[2] = jet::Currency{8}; }, "table Bank: row 6"},
        {"values late among many",
         [](auto& c) {
             c[1].rows[2500].row[3] = jet::Currency{8};
             c[1].rows[2900].row[3] = jet::Currency{8};
         },
         "table Bills: row 2501"},
        {"a row of the table added", [](auto& c) { c.back().rows[0].row[0] = std::u16string(u"иная"); },
         "table Notes: row 1"},
        {"a removal moved", [](auto& c) { c[0].rows[1].position = 99; }, "table Bank: row 100"},
        {"an insert less", [](auto& c) { c[0].rows.pop_back(); }, "table Bank: row 400 more than expected"},
        {"a counter", [](auto& c) { c[3].lastAutoNumber = 1; }, "table Purse: autonumber counter"},
        {"a patched value", [&](auto& c) { c[mon].rows[1].row[0] = std::int32_t{5}; }, "table Mon: row 5"},
        {"a patched row's column count", [&](auto&) { ++bytes[rowStart(mon, 3)]; }, "table Mon: row 4"},
        {"a patched row's text", [&](auto&) { ++bytes[rowStart(mon, 3) + 6]; }, "table Mon: row 4"},
        {"a kept row's bytes on a patched page", [&](auto&) { ++bytes[rowStart(mon, 11) + 6]; },
         "table Mon: row 12"},
        {"a kept row's bytes", [&](auto&) { ++bytes[(next.dataPages(0)[0] + 1) * 4096 - 1]; },
         "table Bank: row 1"},
    };
    for (const ChangedCase& c : changedCases) {
        bytes.assign(next.bytes().begin(), next.bytes().end());
        std::vector<jet::TableChanges> expected = changes;
        c.change(expected);
        EXPECT_EQ(
            store::firstDifferenceInChangedFile(previous.bytes(), bytes, expected, std::span(&notes, 1)),
            c.difference)
            << c.what;
    }
}
