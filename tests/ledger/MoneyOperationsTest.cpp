#include "LedgerFile.h"

#include "ledger/Bank.h"
#include "ledger/Expenses.h"
#include "ledger/PurseCatalogue.h"
#include "ledger/PurseOperations.h"
#include "store/StoreTexts.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using ledger::BankDirection;
using ledger::PurseDirection;
using store::texts::amountOutOfRange;

// Only the row is rounded: a stored balance with more than kopecks keeps them.
TEST(Bank, RowKeepsTheRoundedAmountAndTheBalanceMovesByExactlyTheRow)
{
    struct Case
    {
        const char* start;
        const char* amount;
        BankDirection direction;
        const char* row;
        const char* balance;
        QString comment;
    };
    const Case cases[] = {
        {"100", "12,345", BankDirection::Deposit, "12.35", "112.35", "Мамин долг 'за июнь'"},
        // Half a kopeck goes towards plus infinity, so the withdrawal is a
        // kopeck smaller, and the balance falls by the same 12,34.
        {"100", "12,345", BankDirection::Withdrawal, "-12.34", "87.66", "\"кавычки\"\tи табуляция"},
        {"100", "-50", BankDirection::Deposit, "-50", "50", QString(254, QChar(u'ж')) + "'"},
        {"100", "-50", BankDirection::Withdrawal, "50", "150", ""},
        {"100,0049", "0,005", BankDirection::Deposit, "0.01", "100.0149", "Зарплата"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.start) + " " + c.amount);
        DataBuilder data;
        data.balance(c.start);
        LedgerFile file(data);
        ASSERT_EQ(said(ledger::Bank(file.store())
                           .record({QDate(2026, 3, 14), typed(c.amount), c.direction, c.comment})),
                  "done");
        const store::Rows bankRows = rows(store::Store(file.folder().path()), "Bank");
        ASSERT_EQ(bankRows.size(), 1u);
        EXPECT_EQ(bankRows[0].amount(2).toPlainString().toStdString(), c.row);
        EXPECT_EQ(bankRows[0].text(3), c.comment);
        EXPECT_EQ(file.balance(), c.balance);
    }
}

// The purse holds a fraction of a kopeck, as a file made elsewhere may: it is
// kept, nothing is rounded but the amount. A purse without a row starts from zero.
TEST(Expenses, BalanceAndPurseFallByExactlyTheRoundedAmount)
{
    struct Case
    {
        const char* amount;
        const char* purseStart; // nullptr: no row of money
        const char* billed;
        const char* balance; // starts at 100
        const char* purse;
    };
    for (const Case& c :
         {Case{"10,125", "40,0049", "10.13", "89.87", "29.8749"},
          Case{"-50", "40,0049", "-50", "150", "90.0049"}, Case{"15", nullptr, "15", "85", "-15"}}) {
        SCOPED_TRACE(c.amount);
        DataBuilder data;
        data.balance("100").account(3, "Питание").purse(5, "Карта", "7");
        c.purseStart ? data.purse(2, "Наличные", c.purseStart) : data.purseWithoutMoney(2, "Наличные");
        LedgerFile file(data);
        const QString name = "Хлеб 'Бородинский'", note = "к \"обеду\"\tи ужину";
        const auto result =
            ledger::Expenses(file.store()).book({QDate(2026, 3, 14), 3, typed(c.amount), name, note, 2});
        ASSERT_EQ(said(result), "done");
        EXPECT_EQ(result.value().purseBalance.toPlainString().toStdString(), c.purse);
        const store::Rows bills = rows(store::Store(file.folder().path()), "Bills");
        ASSERT_EQ(bills.size(), 1u);
        EXPECT_EQ(bills[0].amount(3).toPlainString().toStdString(), c.billed);
        EXPECT_EQ(QStringList({bills[0].text(4), bills[0].text(5)}), QStringList({name, note}));
        EXPECT_EQ(file.balance(), c.balance);
        EXPECT_EQ(file.purse(2), c.purse);
        EXPECT_EQ(file.purse(5), "7");
    }
}

TEST(PurseOperations, OnlyThePurseRowChanges)
{
    struct Case
    {
        const char* start; // nullptr: no row of money
        const char* amount;
        PurseDirection direction;
        const char* purse;
    };
    for (const Case& c :
         {Case{"100", "50,5", PurseDirection::PutIn, "150.5"}, Case{nullptr, "7", PurseDirection::PutIn, "7"},
          Case{"0", "12,345", PurseDirection::TakeOut, "-12.34"},
          Case{"10,0049", "1", PurseDirection::PutIn, "11.0049"}}) {
        SCOPED_TRACE(c.amount);
        DataBuilder data;
        data.balance("1000").purse(1, "Наличные", "1").bank(QDate(2026, 1, 1), "1000");
        c.start ? data.purse(4, "Карта", c.start) : data.purseWithoutMoney(4, "Карта");
        LedgerFile file(data);
        EXPECT_EQ(said(ledger::PurseOperations(file.store()).move(4, typed(c.amount), c.direction)), "done");
        EXPECT_EQ(file.purse(4), c.purse);
        EXPECT_EQ(file.count("Purse"), 2);
        EXPECT_EQ(file.purse(1), "1");
        EXPECT_EQ(file.balance(), "1000");
        EXPECT_EQ(file.count("Bank") + file.count("Bills"), 1);
    }
}

// Refusals come before anything is confirmed or written, and the store goes
// on working after them. A file made elsewhere whose bank figure already lies
// outside the range may be brought closer, not taken further out.
TEST(MoneyOperations, ARefusalWritesNothing)
{
    DataBuilder data;
    data.balance("900000000000000")
        .purse(1, "Наличные", "922337203685477")
        .purse(2, "Карта", "922337203685477");
    LedgerFile file(data);
    ledger::Bank bank(file.store());
    ledger::Expenses expenses(file.store());
    ledger::PurseOperations purses(file.store());
    const QDate day(2026, 1, 2);
    int confirmations = 0;
    const auto confirm = [&] { ++confirmations; };
    const QByteArray before = file.folder().bytes();
    EXPECT_EQ(said(bank.record({day, typed("1"), BankDirection::Deposit, QString(256, u'ж')})),
              "Комментарий не может быть длиннее 255 символов!");
    EXPECT_EQ(said(bank.record({day, typed("100000000000000"), BankDirection::Deposit, {}})),
              amountOutOfRange);
    EXPECT_EQ(said(bank.record({day, typed("-922337203685477,5808"), BankDirection::Withdrawal, {}})),
              amountOutOfRange);
    EXPECT_EQ(said(expenses.book({day, 3, typed("10"), "Хлеб", QString(256, u'я'), 2})),
              "Примечание расхода не может быть длиннее 255 символов!");
    EXPECT_EQ(said(expenses.book({day, 3, typed("-922337203685477"), "Хлеб", {}, 2})), amountOutOfRange);
    EXPECT_EQ(said(purses.move(2, typed("0,01"), PurseDirection::PutIn, confirm)), amountOutOfRange);
    EXPECT_EQ(said(purses.move(2, typed("-922337203685477"), PurseDirection::TakeOut, confirm)),
              amountOutOfRange);
    EXPECT_EQ(confirmations, 0);
    EXPECT_EQ(file.folder().bytes(), before);
    EXPECT_TRUE(file.sink.messages.isEmpty());

    // The confirmation comes before the file is written.
    const auto confirmUnwritten = [&] {
        ++confirmations;
        EXPECT_EQ(file.folder().bytes(), before);
    };
    EXPECT_EQ(said(purses.move(2, typed("0,01"), PurseDirection::TakeOut, confirmUnwritten)), "done");
    EXPECT_EQ(confirmations, 1);
    EXPECT_EQ(file.purse(2), "922337203685476.99");
    EXPECT_EQ(said(ledger::PurseCatalogue(file.store()).remove(1)), "done");
    EXPECT_EQ(said(bank.record({day, typed("1"), BankDirection::Withdrawal, {}})), "done");
    EXPECT_EQ(file.balance(), "899999999999999");

    // A date the file cannot hold: the insert fails, the balance stays.
    EXPECT_EQ(said(bank.record({QDate(10000, 1, 2), typed("1"), BankDirection::Deposit, {}})), "not saved");
    ASSERT_EQ(file.sink.messages.size(), 1);
    EXPECT_TRUE(file.sink.messages[0].startsWith("Error number: 275\r"));
    EXPECT_EQ(file.balance(), "899999999999999");

    // Without a balance row only the operation is kept.
    LedgerFile bare(DataBuilder().withoutBalanceRow());
    EXPECT_EQ(said(ledger::Bank(bare.store()).record({day, typed("10"), BankDirection::Deposit, {}})),
              "done");
    EXPECT_EQ(bare.count("Bank"), 1);
    EXPECT_EQ(bare.balance(), "null");
}
