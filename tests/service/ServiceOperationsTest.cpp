#include "LedgerFile.h"
#include "service/AccountCatalogue.h"
#include "service/Clearing.h"
#include "service/CurrencyRates.h"
#include "service/ExpenseTransfer.h"
#include "service/OperationDeletion.h"
#include "service/Password.h"
#include "service/ServiceTexts.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

using namespace velmora::test;
using service::AccountCatalogue;
using service::OperationDeletion;
using store::texts::amountOutOfRange;

TEST(AccountCatalogue, AnAccountKeepsItsExpensesAndIsRemovedOnlyWithoutThem)
{
    DataBuilder data;
    data.account(3, "Питание").account(4, "Связь").account(5, "Отпуск");
    data.bill(QDate(2026, 3, 1), 3, "100").bill(QDate(2026, 3, 2), 4, "20").bill(QDate(2026, 3, 3), 4, "5");
    LedgerFile d(data);
    const QStringList bills = d.rows("Bills");
    AccountCatalogue accounts(d.store());

    ASSERT_TRUE(accounts.rename(3, "Продукты"));
    EXPECT_EQ(accounts.name(3), QString("Продукты"));
    const QByteArray before = d.folder().bytes();
    EXPECT_EQ(said(accounts.remove(4)), QString::fromUtf8(service::texts::accountInUse).arg(2).toStdString());
    EXPECT_EQ(d.folder().bytes(), before);
    EXPECT_EQ(d.rows("Bills"), bills);

    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(4, 5));
    EXPECT_EQ(said(accounts.remove(4)), "done");
    EXPECT_EQ(accounts.entries(), QStringList({"3 - Продукты", "5 - Отпуск"}));
    EXPECT_EQ(accounts.name(4), QString());
    EXPECT_TRUE(d.sink.messages.isEmpty()) << d.sink.messages.join('\n').toStdString();
}

TEST(AccountCatalogue, NamesAreStoredAsTypedUpToTheColumnSize)
{
    LedgerFile d;
    AccountCatalogue accounts(d.store());
    for (const QString& name : {QString("Д'Артаньян"), QString("\"Кавычки\" и 'апострофы'"),
                                QString(255, u'щ'), QString("x'); DELETE FROM Bills_Dict; --")}) {
        const auto code = accounts.add(name);
        ASSERT_TRUE(code) << name.toStdString();
        EXPECT_EQ(accounts.name(code.value()), name);
    }
    // One more character does not fit: refused before anything is written.
    const QByteArray before = d.folder().bytes();
    EXPECT_EQ(said(accounts.add(QString(256, u'щ'))),
              "Наименование счета не может быть длиннее 255 символов!");
    EXPECT_EQ(said(accounts.rename(1, QString(256, u'щ'))), said(accounts.add(QString(256, u'щ'))));
    EXPECT_EQ(d.folder().bytes(), before);
    EXPECT_EQ(accounts.name(1), QString("Д'Артаньян"));
    EXPECT_TRUE(d.sink.messages.isEmpty());
}

TEST(ExpenseTransfer, MovesOnlyTheSourceAccountsExpenses)
{
    DataBuilder data;
    data.bill(QDate(2025, 1, 1), 3, "10")
        .bill(QDate(2026, 5, 2), 5, "20")
        .bill(QDate(2026, 5, 3), 3, "30", 2);
    data.bill(QDate(2030, 12, 31), 7, "40").bill(QDate(2026, 5, 3), 33, "50");
    LedgerFile d(data);
    QStringList expected = d.rows("Bills");
    for (int i : {0, 2})
        expected[i].replace("|3|", "|7|");
    const QString balance = d.amount("Tech", "F2", "F0 = 'OSTATOK'");

    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(3, 7));
    EXPECT_EQ(d.rows("Bills"), expected);
    EXPECT_EQ(d.amount("Tech", "F2", "F0 = 'OSTATOK'"), balance);

    // The same account on both sides, or one without expenses: nothing to write.
    const QByteArray before = d.folder().bytes();
    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(7, 7));
    ASSERT_TRUE(service::ExpenseTransfer(d.store()).move(4, 9));
    EXPECT_EQ(d.folder().bytes(), before);
}

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

TEST(Password, SetReplacesTheRowAndRemoveLeavesNone)
{
    LedgerFile d;
    service::Password password(d.store());
    EXPECT_EQ(password.current(), QString());
    for (const QString& typed :
         {QString("Ключ-7"), QString("Ключ-7"), QString("па'роль \"1\""), QString(255, u'п')}) {
        ASSERT_TRUE(password.set(typed));
        EXPECT_EQ(password.current(), typed);
        EXPECT_EQ(d.rows("Tech").filter(QRegularExpression("^PW\\|")).size(), 1) << "one password row";
    }
    ASSERT_TRUE(password.remove());
    EXPECT_EQ(password.current(), QString());
    EXPECT_TRUE(d.rows("Tech").filter(QRegularExpression("^PW\\|")).isEmpty());
    // Too long for the column: the old row is not lost on the way.
    ASSERT_TRUE(password.set("старый"));
    EXPECT_EQ(said(password.set(QString(256, u'п'))), "Пароль не может быть длиннее 255 символов!");
    EXPECT_EQ(password.current(), QString("старый"));
}

TEST(CurrencyRates, KeptToTheCentHalfUp)
{
    struct Case
    {
        const char* typed;
        const char* stored;
    };
    LedgerFile d;
    service::CurrencyRates rates(d.store());
    for (const Case& c : {Case{"28,4567", "28.46"}, Case{"28.455", "28.46"}, Case{"28,454", "28.45"},
                          Case{"-0,005", "0"}, Case{"-1,555", "-1.55"}, Case{"100", "100"}}) {
        const auto typed = store::Amount::parse(QString::fromUtf8(c.typed));
        ASSERT_TRUE(typed) << c.typed;
        ASSERT_TRUE(rates.write(*typed, store::Amount::parse(u"91,5").value()));
        const auto read = rates.read();
        ASSERT_TRUE(read && read->usd && read->eur);
        EXPECT_EQ(read->usd->toPlainString().toStdString(), c.stored) << c.typed;
        EXPECT_EQ(read->eur->toPlainString(), "91.5");
    }
}

TEST(CurrencyRates, AMissingRowStaysMissing)
{
    DataBuilder data;
    std::erase_if(data.database().table(u"Cur")->rows,
                  [](const jet::Row& row) { return row[0] == jet::Value(std::int32_t{3}); });
    LedgerFile d(data);
    service::CurrencyRates rates(d.store());
    ASSERT_TRUE(rates.write(store::Amount::parse(u"30").value(), store::Amount::parse(u"40").value()));
    const auto read = rates.read();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->usd, store::Amount::parse(u"30"));
    EXPECT_FALSE(read->eur.has_value());
    EXPECT_EQ(d.rows("Cur"), QStringList({"2|300000"}));
}

TEST(Clearing, EmptiesOperationsAndCataloguesButKeepsPasswordRatesMonthsAndBackup)
{
    DataBuilder data;
    data.password("секрет").balance("5000").account(1, "Питание").purse(1, "Наличные", "100");
    data.bank(QDate(2026, 3, 1), "5000").bill(QDate(2026, 3, 2), 1, "10");
    data.database().table(u"Cur")->rows[0][1] = jet::Currency{284600};
    for (jet::Row& row : data.database().table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"BACKUP")))
            row[3] = jet::DateTime{46000};
    LedgerFile d(data);
    d.folder().write(data.database());
    QFile::copy(d.folder().dataFilePath(), d.backupPath());
    const QByteArray backup = contents(d.backupPath());
    const QStringList months = d.rows("Mon");
    const QStringList currencies = d.rows("Cur");

    ASSERT_TRUE(service::Clearing(d.store()).clearAll());
    for (const char* table : {"Bills", "Bills_Dict", "Bank", "Purse", "Purse_Dict"})
        EXPECT_TRUE(d.rows(table).isEmpty()) << table;
    EXPECT_EQ(d.rows("Tech"), QStringList({"OSTATOK||0|", "BACKUP|||", "PW|секрет||"}));
    EXPECT_EQ(d.rows("Mon"), months);
    EXPECT_EQ(d.rows("Cur"), currencies);
    EXPECT_EQ(contents(d.backupPath()), backup);
    EXPECT_FALSE(backup.isEmpty());
}
