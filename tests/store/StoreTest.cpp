#include "store/Store.h"
#include "store/AtomicFile.h"
#include "store/Transaction.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

using namespace store;
using velmora::test::ProgramFolder;
using velmora::test::RecordingSink;

namespace {

class StoreTest : public ::testing::Test
{
protected:
    StoreTest() { folder.write(velmora::test::sampleDatabase()); }

    Amount balance() { return Amount::fromStored(lookupValue(store, "Tech", "F2", "F0 = 'OSTATOK'")); }

    bool deposit(Transaction& tx, Amount amount, const QString& comment = {})
    {
        return tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                          {QDate(2026, 3, 14), amount, comment});
    }

    ProgramFolder folder;
    RecordingSink sink;
    Store store{folder.path(), &sink};
};

} // namespace

TEST_F(StoreTest, LookupTakesTheLastMatchingRowOrNothing)
{
    Transaction tx(store);
    for (const char* value : {"первый", "второй", "третий"})
        ASSERT_TRUE(tx.execute("INSERT INTO Tech (F0, F1) VALUES ('K', ?)", {QString::fromUtf8(value)}));
    EXPECT_EQ(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}).toString(), QStringLiteral("третий"));
    EXPECT_EQ(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 1).toString(), QStringLiteral("третий"));
    EXPECT_FALSE(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 8).isValid());
    EXPECT_FALSE(tx.lookupValue("Tech", "F1", "F0 = ?", {"нет такого"}).isValid());
    EXPECT_EQ(tx.lookupValue("Tech", "F0", "").toString(), QStringLiteral("K"));
    EXPECT_THROW(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 2), std::invalid_argument);
    // Texts compare without regard to case, Cyrillic included.
    EXPECT_EQ(tx.lookupValue("Bills_Dict", "F0", "F1 = ?", {"ПИТАНИЕ"}).toInt(), 1);
    EXPECT_EQ(tx.query("SELECT ? * 10 + ?", {true, false})[0].integer(0), 10) << "Yes is bound as 1";
    EXPECT_TRUE(sink.engineErrors.isEmpty());
}

// Bound values reach the file as typed; an autonumber is never used twice,
// not after a deletion, not by a new store, not after an explicit number, and
// not when the file's counter lags behind its rows.
TEST_F(StoreTest, CommittedRowsReachTheFileAndNumbersAreNeverReused)
{
    jet::Database db = velmora::test::sampleDatabase();
    db.table(u"Bank")->rows.push_back({std::int32_t{2}, jet::DateTime{46000}, jet::Currency{1}, jet::Null{}});
    db.table(u"Bank")->lastAutoNumber = 1;
    folder.write(db);
    {
        Transaction tx(store);
        ASSERT_TRUE(deposit(tx, *Amount::parse(u"1234,56"), QStringLiteral("Зарплата за март, О'Нил")));
        ASSERT_TRUE(
            tx.execute("UPDATE Tech SET F2 = F2 + ? WHERE F0 = ?", {*Amount::parse(u"0,5"), "OSTATOK"}));
        deposit(tx, Amount());
        tx.execute("DELETE FROM Bank WHERE F0 = 4");
        ASSERT_TRUE(tx.commit());
    }
    const jet::Database file = folder.readDataFile();
    const jet::Table& bank = *file.table(u"Bank");
    ASSERT_EQ(bank.rows.size(), 2u);
    EXPECT_EQ(bank.rows[1], jet::Row({std::int32_t{3}, jet::DateTime{46095}, jet::Currency{12'345'600},
                                      std::u16string(u"Зарплата за март, О'Нил")}));
    EXPECT_EQ(bank.lastAutoNumber, 4);
    EXPECT_EQ(balance(), *Amount::parse(u"0,5"));

    Store fresh(folder.path(), &sink);
    Transaction tx(fresh);
    deposit(tx, Amount());
    EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 5);
    tx.execute("INSERT INTO Bank (F0, F2) VALUES (10, 0)");
    deposit(tx, Amount());
    EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 11);
    ASSERT_TRUE(tx.commit());
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->lastAutoNumber, 11);
}

// A failed statement or query shows its one box, stops the handler's later
// statements and leaves file and memory as they were.
TEST_F(StoreTest, AFailedStatementLeavesFileAndMemoryAsTheyWere)
{
    const QByteArray before = folder.bytes();
    for (const bool query : {false, true}) {
        sink.engineErrors.clear();
        Transaction tx(store);
        ASSERT_TRUE(tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(500'000)}));
        if (query)
            EXPECT_TRUE(tx.query("SELECT F9 FROM Bills").empty());
        else
            EXPECT_FALSE(tx.execute("INSERT INTO Bank (F3) VALUES (?)", {QString(256, QLatin1Char('x'))}));
        EXPECT_FALSE(tx.ok());
        EXPECT_FALSE(tx.execute("DELETE FROM Purse"));
        const StoreResult result = tx.commit();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind(), StoreError::Kind::Statement);
        ASSERT_EQ(sink.engineErrors.size(), 1);
        EXPECT_TRUE(sink.engineErrors[0].startsWith(query ? "Error number: 1\rno such column: F9"
                                                          : "Error number: 275\r"));
        EXPECT_TRUE(query || sink.engineErrors[0].contains("Bank.F3: текст длиннее 255 знаков"));
        EXPECT_EQ(folder.bytes(), before);
        EXPECT_EQ(balance(), Amount());
        EXPECT_EQ(rows(store, "Purse").size(), 1u);
    }
}

TEST_F(StoreTest, TheTablesRefuseWhatTheFileCannotHold)
{
    struct Case
    {
        const char* sql;
        QVariantList values;
        const char* error; // nullptr: accepted
    };
    const Case cases[] = {
        {"INSERT INTO Bank (F3) VALUES (?)", {QString(255, QChar(u'я'))}, nullptr},
        {"INSERT INTO Tech (F0) VALUES (?)", {QString(51, QLatin1Char('k'))}, "текст длиннее 50 знаков"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"14.03.2026"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"2026-02-30"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {QDateTime(QDate(2026, 3, 14), QTime(9, 30))}, nullptr},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {qlonglong{1} << 31}, "число вне допустимого диапазона"},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {"три"}, "cannot store TEXT value in INTEGER column"},
        {"INSERT INTO Purse (F1) VALUES (?)", {12.5}, "cannot store REAL value in INTEGER column"},
    };
    for (const Case& c : cases) {
        sink.engineErrors.clear();
        Transaction tx(store);
        EXPECT_EQ(tx.execute(c.sql, c.values), c.error == nullptr) << c.sql;
        EXPECT_TRUE(c.error ? sink.engineErrors.value(0).contains(QString::fromUtf8(c.error))
                            : sink.engineErrors.isEmpty())
            << sink.engineErrors.value(0).toStdString();
    }
}

// Only the outermost commit writes, once, and only when something changed;
// an inner scope left without commit after changes rolls everything back.
TEST_F(StoreTest, NestedTransactionsWriteOnceAtTheOutermostCommit)
{
    int writes = 0;
    Store counted(folder.path(), &sink,
                  [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
                      ++writes;
                      store::writeFileAtomically(path, bytes);
                  });
    const QByteArray before = folder.bytes();
    for (const bool innerCommits : {false, true}) {
        Transaction outer(counted);
        deposit(outer, Amount::fromUnits(1));
        {
            Transaction readOnly(counted);
            readOnly.query("SELECT * FROM Bank");
        }
        {
            Transaction inner(counted);
            deposit(inner, Amount::fromUnits(2));
            if (innerCommits) {
                EXPECT_TRUE(inner.commit());
            }
        }
        if (innerCommits) {
            EXPECT_EQ(rows(counted, "Bank").size(), 2u); // a standalone call shares the open transaction
        }
        EXPECT_EQ(folder.bytes(), before);
        EXPECT_EQ(static_cast<bool>(outer.commit()), innerCommits);
        EXPECT_EQ(rows(counted, "Bank").size(), innerCommits ? 2u : 0u);
        EXPECT_EQ(writes, innerCommits ? 1 : 0);
    }
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->rows.size(), 2u);
    // Reading only, or committing nothing, writes nothing.
    lookupValue(counted, "Tech", "F2", "F0 = 'OSTATOK'");
    Transaction tx(counted);
    tx.execute("UPDATE Tech SET F2 = 0 WHERE F0 = 'нет такого'");
    EXPECT_TRUE(tx.commit());
    EXPECT_EQ(writes, 1);
    EXPECT_TRUE(sink.storeFailures.isEmpty());
}
