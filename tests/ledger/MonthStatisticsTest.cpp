#include "ledger/MonthStatistics.h"
#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "support/RecordingSink.h"

#include <gtest/gtest.h>

using namespace velmora::test;

namespace {

// Rows around the turn of the year, with times of day at the month ends, a
// row without a date and rows of the same months in other years.
jet::Database yearEnd()
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
    return data.database();
}

} // namespace

TEST(MonthStatistics, CurrentAndPreviousCalendarMonth)
{
    ProgramFolder folder;
    folder.write(yearEnd());
    store::Store store(folder.path());
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
             Case{QDate(2026, 3, 1), "0", "0", "0", "3.3"},
             Case{QDate(2025, 1, 5), "0", "0", "7777", "888"},
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

TEST(MonthStatistics, UnreadableFileIsReportedAndGivesNothing)
{
    ProgramFolder folder;
    RecordingSink sink;
    store::Store store(folder.path(), &sink);
    EXPECT_FALSE(ledger::MonthStatistics::read(store, QDate(2026, 3, 1)).has_value());
    ASSERT_EQ(sink.messages.size(), 1);
    EXPECT_TRUE(sink.messages.front().contains(folder.dataFilePath())) << sink.messages.front().toStdString();
}
