#include "LedgerFile.h"

#include "ledger/Balances.h"
#include "ledger/MonthStatistics.h"
#include "ledger/PurseCatalogue.h"

#include <gtest/gtest.h>

#include <functional>

using namespace velmora::test;

TEST(Balances, BankIsTheStoredBalanceLessThePurses)
{
    struct Case
    {
        const char* what;
        std::function<void(DataBuilder&)> fill;
        const char* purses;
        const char* bank;
    };
    const Case cases[] = {
        {"purses",
         [](DataBuilder& d) { d.balance("1000").purse(1, "Наличные", "-100").purse(2, "Карта", "50,25"); },
         "-49.75", "1049.75"},
        {"purse without money", [](DataBuilder& d) { d.balance("7").purseWithoutMoney(1, "Пустой"); }, "0",
         "7"},
        {"no balance row", [](DataBuilder& d) { d.withoutBalanceRow().purse(1, "Наличные", "30"); }, "30",
         "-30"},
        {"the last balance row counts",
         [](DataBuilder& d) { d.balance("100").balance("40", true).purse(1, "Наличные", "15"); }, "15", "25"},
        {"more than the file's sums in cents",
         [](DataBuilder& d) { d.balance("0,0001").purse(1, "А", "0,0002"); }, "0.0002", "-0.0001"},
    };
    for (const Case& c : cases) {
        DataBuilder data;
        c.fill(data);
        LedgerFile file(data);
        const auto balances = ledger::Balances::read(file.store());
        ASSERT_TRUE(balances.has_value()) << c.what;
        EXPECT_EQ(balances->purseTotal.toPlainString().toStdString(), c.purses) << c.what;
        EXPECT_EQ(balances->bankAmount.toPlainString().toStdString(), c.bank) << c.what;
    }
}

namespace {

// Rows around the turn of the year, with times of day at the month ends, a
// row without a date and rows of the same months in other years.
DataBuilder yearEnd()
{
    DataBuilder data;
    data.bank(QDate(2024, 12, 15), "7777")
        .bank(QDate(2025, 12, 1), "1000")
        .bank(QDateTime(QDate(2025, 12, 31), QTime(23, 30)), "500,5")
        .bank(QDateTime(QDate(2026, 1, 1), QTime(0, 0)), "200")
        .bank(QDate(2026, 1, 20), "-350,25")
        .undatedBank("99")
        .bill(QDate(2024, 12, 1), 1, "888")
        .bill(QDate(2025, 12, 10), 1, "40")
        .billAt(QDateTime(QDate(2025, 12, 31), QTime(22, 0)), 2, "10,05")
        .bill(QDate(2026, 1, 31), 1, "5")
        .bill(QDate(2026, 2, 1), 2, "3,3");
    return data;
}

} // namespace

TEST(MonthStatistics, CurrentAndPreviousCalendarMonth)
{
    LedgerFile file(yearEnd());
    store::Store& store = file.store();
    struct Case
    {
        QDate today;
        const char* income;
        const char* expenses;
        const char* previousIncome;
        const char* previousExpenses;
    };
    for (const Case& c : {
             // January looks back to December of the year before; withdrawals make the income negative.
             Case{QDate(2026, 1, 15), "-150.25", "5", "1500.5", "50.05"},
             Case{QDate(2026, 2, 28), "0", "3.3", "-150.25", "5"},
             Case{QDate(2025, 12, 31), "1500.5", "50.05", "0", "0"},
         }) {
        const auto statistics = ledger::MonthStatistics::read(store, c.today);
        ASSERT_TRUE(statistics.has_value()) << c.today.toString(Qt::ISODate).toStdString();
        const auto where = c.today.toString(Qt::ISODate).toStdString();
        EXPECT_EQ(statistics->current.income.toPlainString().toStdString(), c.income) << where;
        EXPECT_EQ(statistics->current.expenses.toPlainString().toStdString(), c.expenses) << where;
        EXPECT_EQ(statistics->previous.income.toPlainString().toStdString(), c.previousIncome) << where;
        EXPECT_EQ(statistics->previous.expenses.toPlainString().toStdString(), c.previousExpenses) << where;
    }
}

TEST(PurseCatalogue, NewCodeFollowsTheLargestCodeInUse)
{
    struct Case
    {
        const char* what;
        std::function<void(DataBuilder&)> fill;
        int code;
    };
    const Case cases[] = {
        {"gaps are not filled",
         [](DataBuilder& d) { d.purse(1, "А", "0").purse(7, "Б", "0").purse(2, "В", "0"); }, 8},
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
        EXPECT_FALSE(rows[0].value(2).isValid()) << "a new purse has no note";
        EXPECT_EQ(file.purse(c.code), "0") << c.what;
    }
}

// A renamed purse keeps its code, money and expenses; an empty note is kept
// as an empty text, not as Null.
TEST(PurseCatalogue, RenameKeepsTheCodeAndOpenGivesNameNoteAndMoney)
{
    DataBuilder data;
    data.purse(1, "Наличные", "10").purse(2, "Карта", "-12,5").purseWithoutMoney(4, "Пустой");
    data.bill(QDate(2026, 3, 1), 1, "5", 2);
    LedgerFile file(data);
    ledger::PurseCatalogue purses(file.store());
    EXPECT_EQ(said(purses.rename(2, "Карта", QString(256, u'ж'))),
              "Примечание кошелька не может быть длиннее 255 символов!");
    ASSERT_TRUE(purses.rename(2, "Карта \"Мир\"\t", "зарплатная"));
    ASSERT_TRUE(purses.rename(1, "Наличные", QString()));
    const auto card = purses.open(2);
    EXPECT_EQ(QStringList({card->name, card->note}), QStringList({"Карта \"Мир\"\t", "зарплатная"}));
    EXPECT_EQ(card->balance, store::Amount::parse(u"-12,5"));
    EXPECT_FALSE(purses.open(4)->balance.has_value());
    EXPECT_TRUE(purses.open(99)->name.isEmpty());
    store::Store reader(file.folder().path());
    const store::Rows dict = query(reader, "SELECT F0, F3 FROM Purse_Dict ORDER BY F0");
    ASSERT_EQ(dict.size(), 3u);
    EXPECT_EQ(dict[1].integer(0), 2);
    EXPECT_TRUE(dict[0].value(1).isValid());
    EXPECT_EQ(rows(reader, "Bills").at(0).integer(6), 2);
}
