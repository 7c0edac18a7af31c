#include "service/AccountCatalogue.h"
#include "LedgerFile.h"
#include "service/ExpenseTransfer.h"
#include "service/ServiceTexts.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using service::AccountCatalogue;

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
