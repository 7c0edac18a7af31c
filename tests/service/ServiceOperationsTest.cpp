#include "LedgerFile.h"
#include "service/AccountCatalogue.h"
#include "service/Clearing.h"
#include "service/CurrencyRates.h"
#include "service/ExpenseTransfer.h"
#include "service/OperationDeletion.h"
#include "service/Password.h"
#include "service/ServiceTexts.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace velmora::test;
using service::AccountCatalogue;
using service::OperationDeletion;
using store::texts::amountOutOfRange;

// Names are stored as typed up to the column's size; an account keeps its
// expenses and is removed only once they have moved; moving touches only the
// source account's expenses, and moving nothing writes nothing.
TEST(AccountCatalogue, NamesExpensesAndRemoval)
{
    DataBuilder data;
    data.account(3, "Питание").account(4, "Связь").account(5, "Отпуск");
    data.bill(QDate(2026, 3, 1), 3, "100").bill(QDate(2026, 3, 2), 4, "20").bill(QDate(2026, 3, 3), 4, "5");
    data.bill(QDate(2026, 3, 3), 44, "7");
    LedgerFile d(data);
    AccountCatalogue accounts(d.store());
    const QString name = QString("\"Кавычки\" и 'x'); DELETE FROM Bills_Dict; --").leftJustified(255, u'щ');
    const auto code = accounts.add(name);
    ASSERT_TRUE(code);
    EXPECT_EQ(accounts.name(code.value()), name);
    const QByteArray before = d.folder().bytes();
    EXPECT_EQ(said(accounts.add(QString(256, u'щ'))),
              "Наименование счета не может быть длиннее 255 символов!");
    EXPECT_EQ(said(accounts.rename(3, QString(256, u'щ'))), said(accounts.add(QString(256, u'щ'))));
    EXPECT_EQ(said(accounts.remove(4)), QString::fromUtf8(service::texts::accountInUse).arg(2).toStdString());
    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(7, 7));
    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(8, 9));
    EXPECT_EQ(d.folder().bytes(), before);

    ASSERT_TRUE(accounts.rename(3, "Продукты"));
    QStringList bills = d.rows("Bills");
    bills[1].replace("|4|", "|5|");
    bills[2].replace("|4|", "|5|");
    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(4, 5));
    EXPECT_EQ(d.rows("Bills"), bills);
    EXPECT_EQ(said(accounts.remove(4)), "done");
    EXPECT_EQ(accounts.entries()->mid(0, 2), QStringList({"3 - Продукты", "5 - Отпуск"}));
    EXPECT_TRUE(d.sink.messages.isEmpty()) << d.sink.messages.join('\n').toStdString();
}

// Deleting undoes an operation on the balance exactly, an expense also on the
// purse it was paid from: a purse deleted since gets nothing, one listed
// without a row of money gets a row. A result that would leave the range of
// the balance, a purse or the month's income is refused and writes nothing,
// and a number not in the table changes nothing. (Plain deletions are the
// operations window's random run; what the confirmation shows is the window test's.)
TEST(OperationDeletion, UndoesTheMoneyExactlyOrRefuses)
{
    struct Case
    {
        bool expense;
        const char* amount; // of operation 2
        const char* balance;
        const char* after;           // the balance; null: refused
        const char* sameMonth = "0"; // another bank row of the month
        int purse = 2;               // the expense's
        const char* purseMoney = "49,75";
        QStringList purses = {}; // after; empty: as before
    };
    const Case cases[] = {
        // Rows with more than kopecks, from a file made elsewhere, are undone exactly.
        {false, "-12,3449", "0", "12.3449"},
        {false, "12,345", "0,005", "-12.34"},
        {false, "-1", "922337203685477", nullptr},
        {false, "-1", "0", nullptr, "922337203685477"},
        {false, "-1", "0", "1", "922337203685476"},
        {true, "150,25", "1000", "1150.25", "0", 9},
        {true, "150,25", "1000", "1150.25", "0", 8, "49,75", {"1|100000", "2|497500", "8|1502500"}},
        {true, "150,25", "1000", nullptr, "0", 2, "922337203685477"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.expense ? "expense " : "bank ") + c.amount + " " + c.sameMonth);
        DataBuilder data;
        data.balance(c.balance).purse(1, "Наличные", "10").purse(2, "Карта", c.purseMoney);
        data.purseWithoutMoney(8, "Копилка").bank(QDate(2026, 3, 1), "1").bill(QDate(2026, 3, 1), 3, "7", 1);
        data.bank(QDate(2026, 3, 1), c.expense ? "1" : c.amount, "Зарплата")
            .bank(QDate(2026, 3, 31), c.sameMonth);
        data.bill(QDate(2026, 3, 1), 3, c.expense ? c.amount : "7", c.purse);
        LedgerFile d(data);
        OperationDeletion deletion(d.store());
        ASSERT_EQ(said(c.expense ? deletion.findExpense(" 2 ") : deletion.findBankOperation("2")), "done");
        const QByteArray before = d.folder().bytes();
        const QStringList purses = d.rows("Purse");
        const auto outcome = c.expense ? deletion.deleteExpense(2) : deletion.deleteBankOperation(2);
        EXPECT_EQ(said(outcome), c.after ? "done" : amountOutOfRange);
        if (!c.after) {
            EXPECT_EQ(d.folder().bytes(), before);
            continue;
        }
        EXPECT_EQ(d.balance(), c.after);
        EXPECT_EQ(d.rows("Purse"), c.purses.isEmpty() ? purses : c.purses);
        EXPECT_EQ(d.count("Bank") + d.count("Bills"), 4);
    }

    LedgerFile d(DataBuilder().balance("100").bank(QDate(2026, 3, 1), "5").bill(QDate(2026, 3, 1), 1, "3"));
    OperationDeletion deletion(d.store());
    const QByteArray before = d.folder().bytes();
    // Bank number 2 and expense 2 do not exist; the other texts are no operation numbers at all.
    for (const char* typed : {"2", "", "0", "-1", "+1", "1a", "1,0", "2147483649", "١"}) {
        EXPECT_EQ(said(deletion.findBankOperation(typed)), service::texts::selectOperation) << typed;
        EXPECT_EQ(said(deletion.findExpense(typed)), service::texts::selectOperation) << typed;
    }
    ASSERT_EQ(said(deletion.deleteBankOperation(2)), "done");
    ASSERT_EQ(said(deletion.deleteExpense(2)), "done");
    EXPECT_EQ(d.folder().bytes(), before);
}

// One password row, replaced; none after removal; a password too long for
// the column leaves the old one.
TEST(Password, SetReplacesTheRowAndRemoveLeavesNone)
{
    LedgerFile d;
    service::Password password(d.store());
    for (const QString& typed : {QString("Ключ-7"), QString("па'роль \"1\""), QString(255, u'п')}) {
        ASSERT_TRUE(password.set(typed));
        EXPECT_EQ(password.current(), typed);
        EXPECT_EQ(d.rows("Tech").filter(QRegularExpression("^PW\\|")).size(), 1) << "one password row";
    }
    ASSERT_TRUE(password.remove());
    EXPECT_EQ(password.current(), QString());
    EXPECT_TRUE(d.rows("Tech").filter(QRegularExpression("^PW\\|")).isEmpty());
    ASSERT_TRUE(password.set("старый"));
    EXPECT_EQ(said(password.set(QString(256, u'п'))), "Пароль не может быть длиннее 255 символов!");
    EXPECT_EQ(password.current(), QString("старый"));
}

// Each rate goes to its own row; a missing row stays missing. (The window's
// test sees both rates kept to the cent.)
TEST(CurrencyRates, AMissingRowStaysMissing)
{
    DataBuilder data;
    std::erase_if(data.database().table(u"Cur")->rows,
                  [](const jet::Row& row) { return row[0] == jet::Value(std::int32_t{3}); });
    LedgerFile d(data);
    service::CurrencyRates rates(d.store());
    ASSERT_TRUE(rates.write(typed("30"), typed("40")));
    EXPECT_EQ(rates.read()->usd, typed("30"));
    EXPECT_FALSE(rates.read()->eur.has_value());
    EXPECT_EQ(d.rows("Cur"), QStringList({"2|300000"}));
}

// Clearing leaves the backup alone: the window's test restores it afterwards.
TEST(Clearing, EmptiesOperationsAndCataloguesButKeepsPasswordRatesAndMonths)
{
    DataBuilder data;
    data.password("секрет").balance("5000").account(1, "Питание").purse(1, "Наличные", "100");
    data.bank(QDate(2026, 3, 1), "5000").bill(QDate(2026, 3, 2), 1, "10");
    data.database().table(u"Cur")->rows[0][1] = jet::Currency{284600};
    for (jet::Row& row : data.database().table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"BACKUP")))
            row[3] = jet::DateTime{46000};
    LedgerFile d(data);
    const QStringList months = d.rows("Mon");
    const QStringList currencies = d.rows("Cur");

    ASSERT_TRUE(service::Clearing(d.store()).clearAll());
    for (const char* table : {"Bills", "Bills_Dict", "Bank", "Purse", "Purse_Dict"})
        EXPECT_TRUE(d.rows(table).isEmpty()) << table;
    EXPECT_EQ(d.rows("Tech"), QStringList({"OSTATOK||0|", "BACKUP|||", "PW|секрет||"}));
    EXPECT_EQ(d.rows("Mon"), months);
    EXPECT_EQ(d.rows("Cur"), currencies);
}
