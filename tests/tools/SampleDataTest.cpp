#include "SampleData.h"
#include "MoneyCheck.h"

#include "CsvExport.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

using namespace std::chrono;
using velmora::makeSampleHistory;
using velmora::SampleOptions;

namespace {

SampleOptions options(int years, int opsPerMonth, std::uint64_t seed, sys_days lastDay)
{
    SampleOptions o;
    o.years = years;
    o.opsPerMonth = opsPerMonth;
    o.seed = seed;
    o.lastDay = lastDay;
    return o;
}

std::string csvOf(const jet::Database& db)
{
    std::string all;
    for (const jet::Table& table : db.tables)
        all += velmora::exportCsv(table);
    return all;
}

} // namespace

TEST(SampleData, MoneyAddsUpForEverySize)
{
    // From a single salary a month to about 100,000 operations; a history that
    // ends early in a month, on a leap day, and on the last day of a year.
    const SampleOptions cases[] = {
        options(1, 1, 1, sys_days{2024y / 3 / 14}),    options(1, 2, 2, sys_days{2024y / 1 / 1}),
        options(2, 30, 3, sys_days{2024y / 2 / 29}),   options(3, 60, 4, sys_days{2023y / 12 / 31}),
        options(10, 833, 5, sys_days{2025y / 6 / 10}), options(100, 1, 6, sys_days{2025y / 6 / 10}),
    };
    for (const SampleOptions& o : cases) {
        const velmora::SampleHistory history = makeSampleHistory(o);
        SCOPED_TRACE(std::to_string(o.years) + " years, " + std::to_string(o.opsPerMonth) + " a month");
        EXPECT_EQ(velmora::test::moneyProblems(history.database, history.transfers), "");
        EXPECT_EQ(velmora::test::shapeProblems(history.database, o), "");
    }
}

TEST(SampleData, SameSeedGivesSameHistoryOtherSeedAnother)
{
    const sys_days end{2024y / 5 / 20};
    const std::string first = csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end)));
    EXPECT_EQ(csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end))), first);
    EXPECT_NE(csvOf(velmora::makeSampleDatabase(options(2, 40, 12, end))), first);
    EXPECT_EQ(velmora::makeSampleDatabase(options(2, 40, 11, end)).creationDate,
              static_cast<double>((sys_days{2022y / 6 / 1}).time_since_epoch().count() + 25569));
}

TEST(SampleData, LooksLikeAHouseholdsBooks)
{
    const SampleOptions o = options(3, 60, 21, sys_days{2024y / 8 / 15});
    const velmora::SampleHistory history = makeSampleHistory(o);
    const jet::Database& db = history.database;
    std::set<std::pair<int, unsigned>> salaryMonths;
    int withdrawals = 0;
    for (const jet::Row& row : db.table(u"Bank")->rows) {
        const year_month_day day{
            sys_days{days{static_cast<int>(std::get<jet::DateTime>(row[1]).days) - 25569}}};
        if (std::get<std::u16string>(row[3]).starts_with(u"Зарплата за"))
            salaryMonths.insert({static_cast<int>(day.year()), static_cast<unsigned>(day.month())});
        withdrawals += std::get<jet::Currency>(row[2]).units < 0;
    }
    EXPECT_EQ(salaryMonths.size(), 35u) << "every month but the first has its salary";
    EXPECT_GT(withdrawals, 20);
    std::set<std::int32_t> accounts, purses;
    int withNote = 0;
    for (const jet::Row& row : db.table(u"Bills")->rows) {
        accounts.insert(std::get<std::int32_t>(row[2]));
        purses.insert(std::get<std::int32_t>(row[6]));
        withNote += !std::get<std::u16string>(row[5]).empty();
    }
    EXPECT_EQ(accounts.size(), 12u);
    EXPECT_EQ(purses.size(), db.table(u"Purse_Dict")->rows.size());
    const auto expenses = static_cast<int>(db.table(u"Bills")->rows.size());
    EXPECT_GT(withNote, expenses / 10);
    EXPECT_LT(withNote, expenses / 2);
    bool takenBack = false;
    for (const velmora::PurseTransfer& t : history.transfers)
        takenBack = takenBack || t.units < 0;
    EXPECT_TRUE(takenBack) << "full purses give money back to the bank";
    EXPECT_GT(std::get<jet::Currency>(db.table(u"Cur")->rows[0][1]).units, 0);
}

TEST(SampleData, RefusesAnEmptyHistory)
{
    EXPECT_THROW(makeSampleHistory(options(0, 10, 1, sys_days{2024y / 1 / 1})), std::invalid_argument);
    EXPECT_THROW(makeSampleHistory(options(1, 0, 1, sys_days{2024y / 1 / 1})), std::invalid_argument);
}
