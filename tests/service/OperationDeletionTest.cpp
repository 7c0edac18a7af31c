#include "service/OperationDeletion.h"
#include "LedgerFile.h"
#include "service/ServiceTexts.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using service::OperationDeletion;
using store::texts::amountOutOfRange;

TEST(OperationDeletion, ListsADaysOperationsNewestFirst)
{
    const QDate day(2005, 11, 6);
    DataBuilder data;
    data.bank(day, "100").bank(day.addDays(1), "5").bank(day, "-30").bank(QDateTime(day, QTime(12, 30)), "1");
    data.bill(day, 1, "10").bill(day.addDays(-1), 1, "20").bill(day, 2, "30").bill(day, 1, "40");
    LedgerFile d(data);
    OperationDeletion deletion(d.store());
    const auto found = deletion.list(QDate(2005, 11, 6));
    ASSERT_TRUE(found);
    // An operation entered with a time of day is not of the date itself.
    EXPECT_EQ(found->bank, QStringList({"3", "1"}));
    EXPECT_EQ(found->expenses, QStringList({"4", "3", "1"}));
    const auto empty = deletion.list(QDate(2005, 11, 8));
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->bank.isEmpty() && empty->expenses.isEmpty());
}

TEST(OperationDeletion, DeletingABankOperationUndoesItOnTheBalance)
{
    struct Case
    {
        const char* amount;
        const char* balance;
        const char* after; // null: refused, the balance or the month's income would leave the range
        const char* sameMonth = "0";
    };
    for (const Case& c :
         {Case{"-300", "700", "1000"}, Case{"300", "700", "400"}, Case{"1234,5", "0", "-1234.5"},
          // A row with more than kopecks, from a file made elsewhere, is undone exactly.
          Case{"-12,3449", "0", "12.3449"}, Case{"12,345", "0,005", "-12.34"}, Case{"0", "5", "5"},
          Case{"-1", "922337203685477", nullptr}, Case{"-1", "0", nullptr, "922337203685477"},
          Case{"-1", "0", "1", "922337203685476"}}) {
        DataBuilder data;
        data.balance(c.balance).bank(QDate(2026, 3, 1), "1").bank(QDate(2026, 3, 1), c.amount, "Зарплата");
        data.bank(QDate(2026, 3, 31), c.sameMonth);
        LedgerFile d(data);
        OperationDeletion deletion(d.store());
        const auto found = deletion.findBankOperation("2");
        ASSERT_EQ(said(found), "done");
        EXPECT_EQ(found.value().name, "Зарплата");
        EXPECT_EQ(found.value().amount, store::Amount::parse(QString::fromUtf8(c.amount)));
        const QByteArray before = d.folder().bytes();
        const store::Outcome outcome = deletion.deleteBankOperation(2);
        if (!c.after) {
            EXPECT_EQ(said(outcome), amountOutOfRange) << c.sameMonth;
            EXPECT_EQ(d.folder().bytes(), before) << c.sameMonth;
            continue;
        }
        ASSERT_EQ(said(outcome), "done");
        EXPECT_EQ(d.amount("Tech", "F2", "F0 = 'OSTATOK'"), c.after) << c.amount;
        EXPECT_EQ(d.rows("Bank").size(), 2) << c.amount;
    }
}

TEST(OperationDeletion, DeletingAnExpenseGivesTheMoneyBackToBalanceAndPurse)
{
    DataBuilder data;
    data.balance("1000").purse(1, "Наличные", "10").purse(2, "Карта", "49,75");
    data.bill(QDate(2026, 3, 1), 3, "150,25", 2).bill(QDate(2026, 3, 1), 3, "7", 1);
    LedgerFile d(data);
    OperationDeletion deletion(d.store());
    const auto found = deletion.findExpense(" 1 ");
    ASSERT_EQ(said(found), "done");
    EXPECT_EQ(found.value().amount.toDisplayString(), "150,25");
    EXPECT_EQ(found.value().name, "покупка");

    ASSERT_EQ(said(deletion.deleteExpense(1)), "done");
    EXPECT_EQ(d.amount("Tech", "F2", "F0 = 'OSTATOK'"), "1150.25");
    EXPECT_EQ(d.amount("Purse", "F1", "F0 = 2"), "200");
    EXPECT_EQ(d.amount("Purse", "F1", "F0 = 1"), "10");
    EXPECT_EQ(d.rows("Bills").size(), 1);

    // Giving the money back would take the purse past what the file can hold.
    DataBuilder full;
    full.balance("0").purse(1, "Наличные", "922337203685477").bill(QDate(2026, 3, 1), 3, "7", 1);
    LedgerFile f(full);
    const QByteArray before = f.folder().bytes();
    EXPECT_EQ(said(OperationDeletion(f.store()).deleteExpense(1)), amountOutOfRange);
    EXPECT_EQ(f.folder().bytes(), before);
}

TEST(OperationDeletion, ANumberNotInTheTableChangesNothing)
{
    DataBuilder data;
    data.balance("100")
        .purse(1, "Наличные", "10")
        .bank(QDate(2026, 3, 1), "5")
        .bill(QDate(2026, 3, 1), 1, "3");
    LedgerFile d(data);
    OperationDeletion deletion(d.store());
    const QByteArray before = d.folder().bytes();
    // Bank number 2 and expense 2 do not exist; the other texts are no operation numbers at all.
    for (const char* typed : {"2", "", "0", "-1", "+1", "1a", "1,0", "2147483649", "١"}) {
        EXPECT_EQ(said(deletion.findBankOperation(typed)), service::texts::selectOperation) << typed;
        EXPECT_EQ(said(deletion.findExpense(typed)), service::texts::selectOperation) << typed;
    }
    EXPECT_EQ(said(deletion.findBankOperation(" 1 ")), "done");
    ASSERT_EQ(said(deletion.deleteBankOperation(2)), "done");
    ASSERT_EQ(said(deletion.deleteExpense(2)), "done");
    EXPECT_EQ(d.folder().bytes(), before);
}

// A purse deleted since gets nothing back; one still listed without a row of money gets a row.
TEST(OperationDeletion, AnExpenseWhosePurseIsGoneStillGivesTheBalanceBack)
{
    for (const bool listed : {false, true}) {
        DataBuilder data;
        data.balance("100").purse(1, "Наличные", "10").bill(QDate(2026, 3, 1), 1, "3", 9);
        if (listed)
            data.purseWithoutMoney(9, "Копилка");
        LedgerFile d(data);
        ASSERT_EQ(said(OperationDeletion(d.store()).deleteExpense(1)), "done");
        EXPECT_EQ(d.amount("Tech", "F2", "F0 = 'OSTATOK'"), "103");
        EXPECT_EQ(d.rows("Purse"), listed ? QStringList({"1|100000", "9|30000"}) : QStringList({"1|100000"}));
    }
}
