#include "store/Store.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace store;
using velmora::test::ProgramFolder;
using velmora::test::RecordingSink;

namespace {

const QString kBalance = QStringLiteral("F0 = ?");
const QVariantList kOstatok{QStringLiteral("OSTATOK")};

class StoreTest : public ::testing::Test
{
protected:
    StoreTest() { folder.write(velmora::test::sampleDatabase()); }

    Amount balance() { return Amount::fromStored(lookupValue(store, "Tech", "F2", kBalance, kOstatok)); }

    bool deposit(Transaction& tx, Amount amount, const QString& comment)
    {
        return tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                          {QDate(2026, 3, 14), amount, comment});
    }

    ProgramFolder folder;
    RecordingSink sink;
    Store store{folder.path(), &sink};
};

const jet::Row* findRow(const jet::Table& table, const jet::Value& key)
{
    for (const jet::Row& row : table.rows)
        if (row.at(0) == key)
            return &row;
    return nullptr;
}

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
    EXPECT_EQ(tx.lookupAmount("Tech", "F2", kBalance, kOstatok), Amount());
    EXPECT_TRUE(sink.engineErrors.isEmpty());
}

TEST_F(StoreTest, CommittedStatementsReachTheFileWithBoundValuesAsTyped)
{
    Transaction tx(store);
    const Amount amount = *Amount::parse(u"1234,56");
    ASSERT_TRUE(deposit(tx, amount, QStringLiteral("Зарплата за март, О'Нил")));
    ASSERT_TRUE(tx.execute("UPDATE Tech SET F2 = F2 + ? WHERE F0 = ?", {amount, "OSTATOK"}));
    ASSERT_TRUE(tx.commit());

    const jet::Database file = folder.readDataFile();
    const jet::Table& bank = *file.table(u"Bank");
    ASSERT_EQ(bank.rows.size(), 1u);
    EXPECT_EQ(bank.rows[0][0], jet::Value(std::int32_t{1}));
    EXPECT_EQ(bank.rows[0][1], jet::Value(jet::DateTime{46095}));
    EXPECT_EQ(bank.rows[0][2], jet::Value(jet::Currency{12'345'600}));
    EXPECT_EQ(bank.rows[0][3], jet::Value(std::u16string(u"Зарплата за март, О'Нил")));
    EXPECT_EQ(bank.lastAutoNumber, 1);
    EXPECT_EQ((*findRow(*file.table(u"Tech"), std::u16string(u"OSTATOK")))[2],
              jet::Value(jet::Currency{12'345'600}));
    EXPECT_EQ(balance(), amount);
}

TEST_F(StoreTest, AFailedStatementLeavesFileAndMemoryAsTheyWere)
{
    const std::vector<std::uint8_t> before = folder.dataFileBytes();
    Transaction tx(store);
    ASSERT_TRUE(tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(500'000)}));
    EXPECT_FALSE(tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                            {QDate(2026, 1, 1), Amount(), QString(256, QLatin1Char('x'))}));
    EXPECT_FALSE(tx.ok());
    // The handler stops: later statements do not run and show no box of their own.
    EXPECT_FALSE(tx.execute("DELETE FROM Purse"));
    const StoreResult result = tx.commit();
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind(), StoreError::Kind::Statement);

    ASSERT_EQ(sink.engineErrors.size(), 1);
    EXPECT_TRUE(sink.engineErrors[0].startsWith(QStringLiteral("Error number: 275\r")));
    EXPECT_TRUE(sink.engineErrors[0].contains(QStringLiteral("Bank.F3: текст длиннее 255 знаков")));
    EXPECT_EQ(folder.dataFileBytes(), before);
    EXPECT_EQ(balance(), Amount());
    EXPECT_EQ(rows(store, "Purse").size(), 1u);
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
        {"INSERT INTO Bank (F3) VALUES (?)", {QString(256, QChar(u'я'))}, "текст длиннее 255 знаков"},
        {"INSERT INTO Tech (F0) VALUES (?)", {QString(51, QLatin1Char('k'))}, "текст длиннее 50 знаков"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"14.03.2026"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"2026-02-30"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {QDateTime(QDate(2026, 3, 14), QTime(9, 30))}, nullptr},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {qlonglong{1} << 31}, "число вне допустимого диапазона"},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {"три"}, "cannot store TEXT value in INTEGER column"},
        {"INSERT INTO Purse (F1) VALUES (?)", {12.5}, "cannot store REAL value in INTEGER column"},
        {"INSERT INTO Nowhere VALUES (1)", {}, "no such table: Nowhere"},
    };
    for (const Case& c : cases) {
        sink.engineErrors.clear();
        Transaction tx(store);
        EXPECT_EQ(tx.execute(c.sql, c.values), c.error == nullptr) << c.sql;
        if (c.error) {
            EXPECT_TRUE(sink.engineErrors.value(0).contains(QString::fromUtf8(c.error)))
                << sink.engineErrors.value(0).toStdString();
        }
    }
}

TEST_F(StoreTest, AutonumbersAreNeverReused)
{
    {
        Transaction tx(store);
        for (int i = 0; i < 3; ++i)
            deposit(tx, Amount::fromUnits(i), QString());
        tx.execute("DELETE FROM Bank WHERE F0 = 3");
        ASSERT_TRUE(tx.commit());
    }
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->lastAutoNumber, 3);
    Store fresh(folder.path(), &sink);
    {
        Transaction tx(fresh);
        deposit(tx, Amount(), QString());
        EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 4);
        // An explicit number moves the counter past it.
        tx.execute("INSERT INTO Bank (F0, F2) VALUES (10, 0)");
        deposit(tx, Amount(), QString());
        EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 11);
        ASSERT_TRUE(tx.commit());
    }
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->lastAutoNumber, 11);
}

TEST_F(StoreTest, AFileWhoseCounterLagsBehindItsRowsStillGetsFreshNumbers)
{
    jet::Database db = velmora::test::sampleDatabase();
    jet::Table& bills = *db.table(u"Bills");
    bills.rows.push_back({std::int32_t{7}, jet::DateTime{46000}, std::int32_t{1}, jet::Currency{10'000},
                          std::u16string(u"Хлеб"), std::u16string(), std::int32_t{1}});
    bills.lastAutoNumber = 2;
    folder.write(db);
    Transaction tx(store);
    tx.execute("INSERT INTO Bills (F1, F2, F3, F6) VALUES (?, 1, ?, 1)",
               {QDate(2026, 1, 1), Amount::fromUnits(5)});
    EXPECT_EQ(tx.lookupValue("Bills", "F0", "F3 = ?", {Amount::fromUnits(5)}).toInt(), 8);
}

TEST_F(StoreTest, NestedTransactionsWriteOnceAtTheOutermostCommit)
{
    int writes = 0;
    Store counted(folder.path(), &sink,
                  [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
                      ++writes;
                      store::writeFileAtomically(path, bytes);
                  });
    const std::vector<std::uint8_t> before = folder.dataFileBytes();
    {
        Transaction outer(counted);
        deposit(outer, Amount::fromUnits(1), QString());
        {
            Transaction inner(counted);
            deposit(inner, Amount::fromUnits(2), QString());
            EXPECT_TRUE(inner.commit());
        }
        EXPECT_EQ(rows(counted, "Bank").size(), 2u); // a standalone call shares the open transaction
        EXPECT_EQ(folder.dataFileBytes(), before);
        EXPECT_EQ(writes, 0);
        EXPECT_TRUE(outer.commit());
    }
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->rows.size(), 2u);

    // Reading only, or committing nothing, writes nothing.
    lookupValue(counted, "Tech", "F2", kBalance, kOstatok);
    Transaction tx(counted);
    tx.execute("UPDATE Tech SET F2 = 0 WHERE F0 = 'нет такого'");
    EXPECT_TRUE(tx.commit());
    EXPECT_EQ(writes, 1);
}

TEST_F(StoreTest, AnInnerScopeLeftWithoutCommitAfterChangesRollsEverythingBack)
{
    const std::vector<std::uint8_t> before = folder.dataFileBytes();
    Transaction outer(store);
    deposit(outer, Amount::fromUnits(1), QString());
    {
        Transaction readOnly(store);
        readOnly.query("SELECT * FROM Bank");
    }
    EXPECT_TRUE(outer.ok());
    {
        Transaction inner(store);
        deposit(inner, Amount::fromUnits(2), QString());
    }
    EXPECT_FALSE(outer.commit());
    EXPECT_EQ(folder.dataFileBytes(), before);
    EXPECT_TRUE(rows(store, "Bank").empty());
    EXPECT_TRUE(sink.storeFailures.isEmpty());
}

namespace {

class StoreQueryTest : public ::testing::Test
{
protected:
    StoreQueryTest()
    {
        folder.write(velmora::test::sampleDatabase());
        Transaction tx(store);
        const struct
        {
            QDate date;
            int account;
            const char* amount;
            const char* name;
        } expenses[] = {
            {QDate(2025, 12, 31), 1, "10,50", "Хлеб"}, {QDate(2026, 1, 1), 1, "0,01", "Соль"},
            {QDate(2026, 1, 15), 2, "100", "Автобус"}, {QDate(2026, 1, 31), 1, "2,675", "хлеб"},
            {QDate(2026, 2, 1), 2, "7", "Метро"},
        };
        for (const auto& e : expenses)
            tx.execute(
                "INSERT INTO Bills (F1, F2, F3, F4, F5, F6) VALUES (?, ?, ?, ?, '', 1)",
                {e.date, e.account, *Amount::parse(QString::fromUtf8(e.amount)), QString::fromUtf8(e.name)});
        EXPECT_TRUE(tx.commit());
    }

    ProgramFolder folder;
    RecordingSink sink;
    Store store{folder.path(), &sink};
};

} // namespace

TEST_F(StoreQueryTest, MonthSumsAreExact)
{
    const Rows rows =
        query(store, "SELECT SUM(F3) AS SUM1 FROM Bills WHERE strftime('%Y-%m', F1) = ?", {"2026-01"});
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].amount(0).toPlainString(), QStringLiteral("102.685"));
    EXPECT_EQ(rows[0].value(u"sum1"), rows[0].value(0));

    const Rows march = query(store, "SELECT SUM(F3) FROM Bills WHERE strftime('%Y-%m', F1) = '2026-03'");
    EXPECT_FALSE(march[0].value(0).isValid());
    EXPECT_EQ(march[0].amount(0), Amount());
}

TEST_F(StoreQueryTest, RowsGiveTypedValuesAndGroupTextsWithoutCase)
{
    const Rows rows = query(store,
                            "SELECT F4, COUNT(*) AS N, MAX(F1) AS Last FROM Bills WHERE F2 = ? GROUP BY F4 "
                            "ORDER BY F4",
                            {1});
    ASSERT_EQ(rows.size(), 2u); // "Хлеб" and "хлеб" are one name
    EXPECT_EQ(rows[0].text(0), QStringLiteral("Соль"));
    EXPECT_EQ(rows[1].integer(1), 2);
    EXPECT_EQ(rows[1].date(2), QDate(2026, 1, 31));
    EXPECT_EQ(rows[1].columnNames(), (QStringList{"F4", "N", "Last"}));
    EXPECT_EQ(query(store, "SELECT ? * 10 + ?", {true, false})[0].integer(0), 10) << "Yes is bound as 1";
}

TEST_F(StoreQueryTest, AFailedQueryShowsItsErrorAndSpoilsTheTransaction)
{
    Transaction tx(store);
    EXPECT_TRUE(tx.query("SELECT F9 FROM Bills").empty());
    ASSERT_EQ(sink.engineErrors.size(), 1);
    EXPECT_EQ(sink.engineErrors[0], QStringLiteral("Error number: 1\rno such column: F9"));
    EXPECT_FALSE(tx.execute("DELETE FROM Bills"));
    EXPECT_FALSE(tx.commit());
    EXPECT_EQ(rows(store, "Bills").size(), 5u);
}
