#include "LedgerFile.h"

#include "ledger/Balances.h"
#include "ledger/PurseCatalogue.h"

#include <gtest/gtest.h>

#include <functional>

using namespace velmora::test;

TEST(PurseCatalogue, NewCodeFollowsTheLargestCodeInUse)
{
    struct Case
    {
        const char* what;
        std::function<void(DataBuilder&)> fill;
        int code;
    };
    const Case cases[] = {
        {"empty catalogue", [](DataBuilder&) {}, 1},
        {"gaps are not filled",
         [](DataBuilder& d) { d.purse(1, "А", "0").purse(7, "Б", "0").purse(2, "В", "0"); }, 8},
        {"purse without money", [](DataBuilder& d) { d.purseWithoutMoney(12, "Копилка"); }, 13},
        // A deleted purse's code stays taken while its expenses or money name it.
        {"expenses of a deleted purse",
         [](DataBuilder& d) { d.purse(2, "А", "0").bill(QDate(2026, 3, 1), 1, "5", 9); }, 10},
        {"money of a purse not listed",
         [](DataBuilder& d) {
             d.purse(1, "А", "0").purse(15, "Б", "5");
             d.database().table(u"Purse_Dict")->rows.pop_back();
         },
         16},
    };
    for (const Case& c : cases) {
        DataBuilder data;
        c.fill(data);
        LedgerFile file(data);
        ASSERT_EQ(ledger::PurseCatalogue(file.store()).create("Отпуск 'летний'").value(), c.code) << c.what;
        store::Store reader(file.folder().path());
        const store::Rows rows = query(reader, "SELECT F1, F2, F3 FROM Purse_Dict WHERE F0 = ?", {c.code});
        ASSERT_EQ(rows.size(), 1u) << c.what;
        EXPECT_EQ(rows[0].text(0), QString("Отпуск 'летний'"));
        EXPECT_FALSE(rows[0].value(1).isValid());
        EXPECT_FALSE(rows[0].value(2).isValid()) << "a new purse has no note";
        EXPECT_EQ(file.purse(c.code), "0") << c.what;
    }
}

TEST(PurseCatalogue, OpenGivesNameNoteAndMoney)
{
    DataBuilder data;
    data.purse(3, "Карта", "-12,5").purseWithoutMoney(4, "Пустой");
    LedgerFile file(data);
    ledger::PurseCatalogue purses(file.store());
    ASSERT_TRUE(purses.rename(3, "Карта", "зарплатная"));

    const auto card = purses.open(3);
    ASSERT_TRUE(card.has_value());
    EXPECT_EQ(card->name, QString("Карта"));
    EXPECT_EQ(card->note, QString("зарплатная"));
    EXPECT_EQ(card->balance, store::Amount::parse(u"-12,5"));

    const auto empty = purses.open(4);
    ASSERT_TRUE(empty.has_value());
    EXPECT_EQ(empty->note, QString());
    EXPECT_FALSE(empty->balance.has_value());

    const auto unknown = purses.open(99);
    ASSERT_TRUE(unknown.has_value());
    EXPECT_TRUE(unknown->name.isEmpty());
}

TEST(PurseCatalogue, RenameKeepsTheCodeAndItsExpenses)
{
    DataBuilder data;
    data.purse(1, "Наличные", "10").purse(2, "Карта", "20").bill(QDate(2026, 3, 1), 1, "5", 2);
    LedgerFile file(data);
    ledger::PurseCatalogue purses(file.store());
    EXPECT_EQ(said(purses.rename(2, "Карта", QString(256, u'ж'))),
              "Примечание кошелька не может быть длиннее 255 символов!");
    ASSERT_TRUE(purses.rename(2, "Карта \"Мир\"\t", QString()));
    store::Store reader(file.folder().path());
    const store::Rows dict = query(reader, "SELECT F0, F1, F3 FROM Purse_Dict ORDER BY F0");
    ASSERT_EQ(dict.size(), 2u);
    EXPECT_EQ(dict[1].integer(0), 2);
    EXPECT_EQ(dict[1].text(1), QString("Карта \"Мир\"\t"));
    // An empty note is kept as an empty text, not as Null.
    EXPECT_TRUE(dict[1].value(2).isValid());
    EXPECT_EQ(dict[1].text(2), QString());
    EXPECT_EQ(file.purse(2), "20");
    EXPECT_EQ(rows(reader, "Bills").at(0).integer(6), 2);
}

TEST(PurseCatalogue, DeletingReturnsTheMoneyToTheBankAndKeepsExpenses)
{
    DataBuilder data;
    data.balance("500")
        .purse(1, "Наличные", "100")
        .purse(2, "Карта", "60")
        .bill(QDate(2026, 3, 1), 1, "5", 2);
    LedgerFile file(data);
    ledger::PurseCatalogue purses(file.store());
    ASSERT_EQ(said(purses.remove(2)), "done");
    EXPECT_EQ(file.purse(2), "null");
    EXPECT_EQ(file.money("SELECT COUNT(*) * 10000 FROM Purse_Dict WHERE F0 = 2"), "0");
    EXPECT_EQ(file.count("Bills"), 1);
    EXPECT_EQ(file.balance(), "500");
    const auto balances = ledger::Balances::read(file.store());
    EXPECT_EQ(balances->bankAmount.toPlainString().toStdString(), "400");
    EXPECT_EQ(balances->purseEntries, QStringList({"1 - Наличные"}));
    // The expense keeps the deleted purse's code taken.
    EXPECT_EQ(purses.create("Новая карта").value(), 3);
}
