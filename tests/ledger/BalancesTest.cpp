#include "ledger/Balances.h"
#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "ledger/MonthStatistics.h"
#include "support/RecordingSink.h"

#include <QFile>

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
        {"prepared file", [](DataBuilder&) {}, "0", "0"},
        {"no purses", [](DataBuilder& d) { d.balance("1234,5"); }, "0", "1234.5"},
        {"purses",
         [](DataBuilder& d) { d.balance("1000").purse(1, "Наличные", "100").purse(2, "Карта", "50,25"); },
         "150.25", "849.75"},
        {"a purse below zero",
         [](DataBuilder& d) { d.balance("10").purse(1, "Наличные", "-20").purse(2, "Карта", "5,5"); },
         "-14.5", "24.5"},
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
        ProgramFolder folder;
        folder.write(data.database());
        store::Store store(folder.path());
        const auto balances = ledger::Balances::read(store);
        ASSERT_TRUE(balances.has_value()) << c.what;
        EXPECT_EQ(balances->purseTotal.toPlainString().toStdString(), c.purses) << c.what;
        EXPECT_EQ(balances->bankAmount.toPlainString().toStdString(), c.bank) << c.what;
    }
}

TEST(Balances, ListsAreInCodeOrder)
{
    DataBuilder data;
    data.account(10, "Транспорт").account(2, "Питание").account(9, "Связь - интернет");
    data.purse(3, "Карта", "0").purse(1, "Наличные", "0").purseWithoutMoney(12, "Копилка");
    ProgramFolder folder;
    folder.write(data.database());
    store::Store store(folder.path());
    const auto balances = ledger::Balances::read(store);
    ASSERT_TRUE(balances.has_value());
    EXPECT_EQ(balances->accountEntries,
              QStringList({"2 - Питание", "9 - Связь - интернет", "10 - Транспорт"}));
    EXPECT_EQ(balances->purseEntries, QStringList({"1 - Наличные", "3 - Карта", "12 - Копилка"}));
}

// A damaged file is reported once and read for what it holds: nothing here.
TEST(Balances, DamagedFileIsReportedAndShowsWhatCouldBeRead)
{
    ProgramFolder folder;
    folder.writeBytes(QByteArray(4096, 'x'));
    RecordingSink sink;
    store::Store store(folder.path(), &sink);
    const auto balances = ledger::Balances::read(store);
    ASSERT_TRUE(balances.has_value());
    EXPECT_EQ(balances->bankAmount.toPlainString(), "0");
    EXPECT_TRUE(balances->purseEntries.isEmpty());
    EXPECT_EQ(sink.messages.size(), 1) << sink.messages.join("\n").toStdString();
    EXPECT_EQ(folder.bytes(), QByteArray(4096, 'x'));
    // A missing file gives nothing, and says which file it missed.
    QFile::remove(folder.dataFilePath());
    EXPECT_FALSE(ledger::MonthStatistics::read(store, QDate(2026, 3, 1)).has_value());
    EXPECT_TRUE(sink.messages.last().contains(folder.dataFilePath())) << sink.messages.last().toStdString();
}
