#include "LedgerFile.h"

#include "ledger/Bank.h"
#include "store/StoreTexts.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using ledger::BankDirection;
using store::texts::amountOutOfRange;

namespace {

store::Amount typed(const char* text)
{
    return *store::Amount::parse(QString::fromUtf8(text));
}

} // namespace

TEST(Bank, RowKeepsTheRoundedAmountAndTheBalanceMovesByExactlyTheRow)
{
    struct Case
    {
        const char* start;
        const char* amount;
        BankDirection direction;
        const char* row;
        const char* balance;
    };
    const Case cases[] = {
        {"100", "12,345", BankDirection::Deposit, "12.35", "112.35"},
        // Half a kopeck goes towards plus infinity, so the withdrawal is a
        // kopeck smaller, and the balance falls by the same 12,34.
        {"100", "12,345", BankDirection::Withdrawal, "-12.34", "87.66"},
        {"0", "12.345", BankDirection::Withdrawal, "-12.34", "-12.34"},
        {"100", "-50", BankDirection::Deposit, "-50", "50"},
        {"100", "-50", BankDirection::Withdrawal, "50", "150"},
        {"100", "0,004", BankDirection::Deposit, "0", "100"},
        // A stored balance with more than kopecks keeps them: only the row is rounded.
        {"100,0049", "1", BankDirection::Deposit, "1", "101.0049"},
        {"100,0049", "0,005", BankDirection::Withdrawal, "0", "100.0049"},
        {"5", "0,005", BankDirection::Withdrawal, "0", "5"},
    };
    for (const Case& c : cases) {
        DataBuilder data;
        data.balance(c.start);
        LedgerFile file(data);
        ledger::Bank bank(file.store());
        const QDate day(2026, 3, 14);
        ASSERT_EQ(said(bank.record({day, typed(c.amount), c.direction, "Зарплата"})), "done") << c.amount;
        const store::Rows bankRows = rows(store::Store(file.folder().path()), "Bank");
        ASSERT_EQ(bankRows.size(), 1u) << c.amount;
        EXPECT_EQ(bankRows[0].integer(0), 1);
        EXPECT_EQ(bankRows[0].date(1), day);
        EXPECT_EQ(bankRows[0].amount(2).toPlainString().toStdString(), c.row) << c.start << " " << c.amount;
        EXPECT_EQ(bankRows[0].text(3), QString("Зарплата"));
        EXPECT_EQ(file.balance(), c.balance) << c.start << " " << c.amount;
        EXPECT_TRUE(file.sink.messages.isEmpty());
    }
}

TEST(Bank, CommentsAreStoredAsTypedUpToTheColumnSize)
{
    const QString longest = QString(254, QChar(u'ж')) + "'";
    for (const QString& comment :
         {QString("Мамин долг 'за июнь'"), QString("\"кавычки\"\tи табуляция"), QString(), longest}) {
        DataBuilder data;
        LedgerFile file(data);
        ASSERT_EQ(said(ledger::Bank(file.store())
                           .record({QDate(2026, 1, 2), typed("1"), BankDirection::Deposit, comment})),
                  "done");
        EXPECT_EQ(rows(store::Store(file.folder().path()), "Bank").at(0).text(3), comment);
    }
}

TEST(Bank, NothingIsWrittenWhenAStatementOrTheSumFails)
{
    DataBuilder data;
    data.balance("900000000000000").bank(QDate(2026, 1, 1), "900000000000000");
    LedgerFile file(data);
    const QByteArray before = file.folder().bytes();
    ledger::Bank bank(file.store());

    // One character more than the column holds: refused before anything is written.
    EXPECT_EQ(said(bank.record({QDate(2026, 1, 2), typed("1"), BankDirection::Deposit, QString(256, u'ж')})),
              "Комментарий не может быть длиннее 255 символов!");
    // A date the file cannot hold: the insert fails, the balance stays.
    EXPECT_EQ(said(bank.record({QDate(10000, 1, 2), typed("1"), BankDirection::Deposit, {}})), "not saved");
    ASSERT_EQ(file.sink.messages.size(), 1);
    EXPECT_TRUE(file.sink.messages[0].startsWith("Error number: 275\r"))
        << file.sink.messages[0].toStdString();

    // A balance beyond the money columns' range is refused before any statement.
    EXPECT_EQ(said(bank.record({QDate(2026, 1, 2), typed("100000000000000"), BankDirection::Deposit, {}})),
              amountOutOfRange);
    EXPECT_EQ(
        said(bank.record({QDate(2026, 1, 2), typed("-922337203685477,5808"), BankDirection::Withdrawal, {}})),
        amountOutOfRange);
    EXPECT_EQ(file.sink.messages.size(), 1);
    EXPECT_EQ(file.folder().bytes(), before);

    // The store goes on working after the failures.
    EXPECT_EQ(said(bank.record({QDate(2026, 1, 2), typed("1"), BankDirection::Withdrawal, {}})), "done");
    EXPECT_EQ(file.balance(), "899999999999999");
}

TEST(Bank, WithoutABalanceRowOnlyTheOperationIsKept)
{
    DataBuilder data;
    data.withoutBalanceRow();
    LedgerFile file(data);
    EXPECT_EQ(
        said(ledger::Bank(file.store()).record({QDate(2026, 1, 2), typed("10"), BankDirection::Deposit, {}})),
        "done");
    EXPECT_EQ(file.count("Bank"), 1);
    EXPECT_EQ(file.balance(), "null");
}
