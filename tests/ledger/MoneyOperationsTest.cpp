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

namespace {

enum class Kind
{
    Deposit,
    Withdrawal,
    Expense,
    PutIn,
    TakeOut
};

} // namespace

// Only the row is rounded: a stored balance or purse with more than kopecks,
// as a file made elsewhere may hold, keeps them and moves by exactly the row.
// A bank operation moves the balance, an expense the balance and its purse, a
// purse operation only its purse. A purse without a row of money starts from
// zero; without a balance row only the operation is kept.
TEST(MoneyOperations, RowKeepsTheRoundedAmountAndTheMoneyMovesByExactlyTheRow)
{
    struct Case
    {
        Kind kind;
        const char* amount;
        const char* row;     // the Bank or Bills row's amount; nullptr: no row
        const char* balance; // nullptr: no balance row
        const char* balanceAfter;
        const char* purse; // of purse 2; nullptr: no row of money
        const char* purseAfter;
        QString text = "Хлеб 'Бородинский'"; // the comment, or the expense's name
    };
    const Case cases[] = {
        {Kind::Deposit, "12,345", "12.35", "100", "112.35", "7", "7", "Мамин долг 'за июнь'"},
        // Half a kopeck goes towards plus infinity, so the withdrawal is a
        // kopeck smaller, and the balance falls by the same 12,34.
        {Kind::Withdrawal, "12,345", "-12.34", "100", "87.66", "7", "7", "\"кавычки\"\tи табуляция"},
        {Kind::Deposit, "-50", "-50", "100", "50", "7", "7", QString(254, QChar(u'ж')) + "'"},
        {Kind::Withdrawal, "-50", "50", "100", "150", "7", "7", ""},
        {Kind::Deposit, "0,005", "0.01", "100,0049", "100.0149", "7", "7"},
        {Kind::Deposit, "10", "10", nullptr, "null", "7", "7"},
        {Kind::Expense, "10,125", "10.13", "100", "89.87", "40,0049", "29.8749"},
        {Kind::Expense, "-50", "-50", "100", "150", "40,0049", "90.0049", "к \"ужину\""},
        {Kind::Expense, "15", "15", "100", "85", nullptr, "-15"},
        {Kind::PutIn, "50,5", nullptr, "1000", "1000", "100", "150.5"},
        {Kind::PutIn, "7", nullptr, "1000", "1000", nullptr, "7"},
        {Kind::TakeOut, "12,345", nullptr, "1000", "1000", "0", "-12.34"},
        {Kind::PutIn, "1", nullptr, "1000", "1000", "10,0049", "11.0049"},
    };
    const QDate day(2026, 3, 14);
    const QString note = "к \"обеду\"\tи ужину";
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.amount) + " from " + (c.balance ? c.balance : "no balance row"));
        DataBuilder data;
        c.balance ? data.balance(c.balance) : data.withoutBalanceRow();
        data.account(3, "Питание").purse(1, "Наличные", "1");
        c.purse ? data.purse(2, "Карта", c.purse) : data.purseWithoutMoney(2, "Карта");
        LedgerFile file(data);
        const bool bank = c.kind == Kind::Deposit || c.kind == Kind::Withdrawal;
        std::string result;
        if (bank) {
            const auto direction =
                c.kind == Kind::Deposit ? BankDirection::Deposit : BankDirection::Withdrawal;
            result = said(ledger::Bank(file.store()).record({day, typed(c.amount), direction, c.text}));
        } else if (c.kind == Kind::Expense) {
            const auto booked =
                ledger::Expenses(file.store()).book({day, 3, typed(c.amount), c.text, note, 2});
            result = said(booked);
            EXPECT_EQ(booked ? booked.value().purseBalance.toPlainString().toStdString() : "", c.purseAfter);
        } else {
            const auto direction = c.kind == Kind::PutIn ? PurseDirection::PutIn : PurseDirection::TakeOut;
            result = said(ledger::PurseOperations(file.store()).move(2, typed(c.amount), direction));
        }
        ASSERT_EQ(result, "done");
        store::Store reader(file.folder().path());
        const store::Rows bankRows = rows(reader, "Bank"), bills = rows(reader, "Bills");
        ASSERT_EQ(bankRows.size() + bills.size(), c.row ? 1u : 0u);
        if (c.row) {
            const store::Row& row = bank ? bankRows.at(0) : bills.at(0);
            EXPECT_EQ(row.amount(bank ? 2 : 3).toPlainString().toStdString(), c.row);
            EXPECT_EQ((bank ? QStringList{row.text(3)} : QStringList{row.text(4), row.text(5)}),
                      (bank ? QStringList{c.text} : QStringList{c.text, note}));
        }
        EXPECT_EQ(file.balance(), c.balanceAfter);
        EXPECT_EQ(file.purse(2), c.purseAfter);
        EXPECT_EQ(file.purse(1), "1");
        EXPECT_EQ(file.count("Purse"), 2);
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
}
