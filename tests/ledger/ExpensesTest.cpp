#include "LedgerFile.h"

#include "ledger/Balances.h"
#include "ledger/Expenses.h"
#include "store/StoreTexts.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using store::texts::amountOutOfRange;

namespace {

store::Amount typed(const char* text)
{
    return *store::Amount::parse(QString::fromUtf8(text));
}

ledger::Expense expense(const char* amount, int purse = 2)
{
    return {QDate(2026, 3, 14), 3, typed(amount), "Хлеб 'Бородинский'", "к \"обеду\"\tи ужину", purse};
}

} // namespace

// The purse holds a fraction of a kopeck, as a file made elsewhere may: it is
// kept, nothing is rounded but the amount.
TEST(Expenses, BalanceAndPurseFallByExactlyTheRoundedAmount)
{
    struct Case
    {
        const char* amount;
        const char* billed;
        const char* balance; // starts at 100
        const char* purse;   // starts at 40,0049
    };
    for (const Case& c : {Case{"10,125", "10.13", "89.87", "29.8749"}, Case{"-50", "-50", "150", "90.0049"},
                          Case{"250", "250", "-150", "-209.9951"}, Case{"0,001", "0", "100", "40.0049"}}) {
        DataBuilder data;
        data.balance("100").account(3, "Питание").purse(2, "Наличные", "40,0049").purse(5, "Карта", "7");
        LedgerFile file(data);
        const auto result = ledger::Expenses(file.store()).book(expense(c.amount));
        ASSERT_EQ(said(result), "done") << c.amount;
        const ledger::BookedExpense& booked = result.value();
        EXPECT_EQ(booked.purseBalance.toPlainString().toStdString(), c.purse) << c.amount;
        EXPECT_EQ(booked.purseTotal, store::WideAmount(booked.purseBalance) + typed("7")) << c.amount;
        const store::Rows bills = rows(store::Store(file.folder().path()), "Bills");
        ASSERT_EQ(bills.size(), 1u);
        EXPECT_EQ(bills[0].date(1), QDate(2026, 3, 14));
        EXPECT_EQ(bills[0].integer(2), 3);
        EXPECT_EQ(bills[0].amount(3).toPlainString().toStdString(), c.billed) << c.amount;
        EXPECT_EQ(bills[0].text(4), QString("Хлеб 'Бородинский'"));
        EXPECT_EQ(bills[0].text(5), QString("к \"обеду\"\tи ужину"));
        EXPECT_EQ(bills[0].integer(6), 2);
        EXPECT_EQ(file.balance(), c.balance) << c.amount;
        EXPECT_EQ(file.purse(2), c.purse) << c.amount;
        EXPECT_EQ(file.purse(5), "7");
        // "В банке" does not move: whole money and purses fall together.
        EXPECT_EQ(ledger::Balances::read(file.store())->bankAmount.toPlainString().toStdString(), "52.9951");
    }
}

TEST(Expenses, APurseWithoutARowStartsFromZero)
{
    DataBuilder data;
    data.balance("100").purseWithoutMoney(2, "Новый");
    LedgerFile file(data);
    const auto booked = ledger::Expenses(file.store()).book(expense("15"));
    ASSERT_EQ(said(booked), "done");
    EXPECT_EQ(file.purse(2), "-15");
    EXPECT_EQ(booked.value().purseTotal.toPlainString().toStdString(), "-15");
    EXPECT_EQ(file.balance(), "85");
}

TEST(Expenses, AFailureWritesNothingAtAll)
{
    DataBuilder data;
    data.balance("100").purse(2, "Наличные", "40");
    LedgerFile file(data);
    const QByteArray before = file.folder().bytes();
    ledger::Expenses expenses(file.store());

    ledger::Expense tooLong = expense("10");
    tooLong.note = QString(256, u'я');
    EXPECT_EQ(said(expenses.book(tooLong)), "Примечание расхода не может быть длиннее 255 символов!");
    EXPECT_EQ(said(expenses.book(expense("-922337203685477"))), amountOutOfRange);
    EXPECT_TRUE(file.sink.messages.isEmpty());
    EXPECT_EQ(file.folder().bytes(), before);

    EXPECT_EQ(said(expenses.book(expense("10"))), "done");
    EXPECT_EQ(file.count("Bills"), 1);
    EXPECT_EQ(file.balance(), "90");
    EXPECT_EQ(file.purse(2), "30");
}
