#include "SampleData.h"

#include "CsvExport.h"

#include <gtest/gtest.h>

#include <map>
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

std::int64_t units(const jet::Value& v)
{
    return std::get<jet::Currency>(v).units;
}

// Replays the history day by day from its rows and the reported purse
// transfers: neither the bank part nor a purse ends a day below zero, and the
// stored balance and purses are what the operations add up to. Empty when all
// holds, else what is wrong first.
std::string moneyProblems(const velmora::SampleHistory& history)
{
    const jet::Database& db = history.database;
    std::map<double, std::map<std::int32_t, std::int64_t>> days; // purse 0 is the bank part
    std::int64_t balance = 0;
    for (const jet::Row& row : db.table(u"Bank")->rows) {
        days[std::get<jet::DateTime>(row[1]).days][0] += units(row[2]);
        balance += units(row[2]);
    }
    for (const jet::Row& row : db.table(u"Bills")->rows) {
        days[std::get<jet::DateTime>(row[1]).days][std::get<std::int32_t>(row[6])] -= units(row[3]);
        balance -= units(row[3]);
    }
    for (const velmora::PurseTransfer& t : history.transfers) {
        const double day = static_cast<double>(t.day.time_since_epoch().count() + 25569);
        days[day][0] -= t.units;
        days[day][t.purse] += t.units;
    }
    std::map<std::int32_t, std::int64_t> money;
    for (const auto& [day, moves] : days)
        for (const auto& [purse, delta] : moves)
            if ((money[purse] += delta) < 0)
                return "purse " + std::to_string(purse) + " below zero on day " + std::to_string(day);
    if (units(db.table(u"Tech")->rows.at(0).at(2)) != balance)
        return "the stored balance is not the sum of the operations";
    for (const jet::Row& row : db.table(u"Purse")->rows)
        if (units(row[1]) != money[std::get<std::int32_t>(row[0])])
            return "purse " + std::to_string(std::get<std::int32_t>(row[0])) + " holds another sum";
    return {};
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
        EXPECT_EQ(moneyProblems(history), "");
        const auto operations =
            history.database.table(u"Bank")->rows.size() + history.database.table(u"Bills")->rows.size();
        EXPECT_EQ(operations, static_cast<std::size_t>(12 * o.years * o.opsPerMonth));
    }
}

TEST(SampleData, SameSeedGivesSameHistoryOtherSeedAnother)
{
    const sys_days end{2024y / 5 / 20};
    const std::string first = csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end)));
    EXPECT_EQ(csvOf(velmora::makeSampleDatabase(options(2, 40, 11, end))), first);
    EXPECT_NE(csvOf(velmora::makeSampleDatabase(options(2, 40, 12, end))), first);
    EXPECT_THROW(makeSampleHistory(options(0, 10, 1, end)), std::invalid_argument);
    EXPECT_THROW(makeSampleHistory(options(1, 0, 1, end)), std::invalid_argument);
}
