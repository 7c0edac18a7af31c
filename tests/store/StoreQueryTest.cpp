#include "store/Store.h"
#include "store/Transaction.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

using namespace store;
using velmora::test::ProgramFolder;
using velmora::test::RecordingSink;

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
