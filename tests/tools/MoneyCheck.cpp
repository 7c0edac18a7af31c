#include "MoneyCheck.h"

#include "jet/Unicode.h"
#include "store/Schema.h"

#include <map>
#include <set>
#include <stdexcept>
#include <variant>

namespace velmora::test {

namespace {

using jet::Value;

std::int64_t units(const Value& v)
{
    return std::get<jet::Currency>(v).units;
}
std::int32_t whole(const Value& v)
{
    return std::get<std::int32_t>(v);
}
double date(const Value& v)
{
    return std::get<jet::DateTime>(v).days;
}
double jetDay(std::chrono::sys_days day)
{
    return static_cast<double>(day.time_since_epoch().count() + 25569);
}

const jet::Table& tableOf(const jet::Database& db, std::u16string_view name)
{
    const jet::Table* table = db.table(name);
    if (!table)
        throw std::runtime_error("a table is missing");
    return *table;
}

std::int64_t storedBalance(const jet::Database& db)
{
    for (const jet::Row& row : tableOf(db, u"Tech").rows)
        if (row[0] == Value{std::u16string(u"OSTATOK")})
            return units(row[2]);
    throw std::runtime_error("no OSTATOK row");
}

// Money that changes hands on one day: the bank part and each purse.
struct DayMoves
{
    std::int64_t bank = 0;
    std::map<std::int32_t, std::int64_t> purses;
};

std::string replayDays(const std::map<double, DayMoves>& days, std::int64_t& bank,
                       std::map<std::int32_t, std::int64_t>& purses)
{
    for (const auto& [day, moves] : days) {
        bank += moves.bank;
        if (bank < 0)
            return "the bank part is below zero after day " + std::to_string(day);
        for (const auto& [purse, delta] : moves.purses)
            if ((purses[purse] += delta) < 0)
                return "purse " + std::to_string(purse) + " is below zero after day " + std::to_string(day);
    }
    return {};
}

std::string checkMoney(const jet::Database& db, const std::vector<PurseTransfer>& transfers)
{
    std::map<double, DayMoves> days;
    std::int64_t bankSum = 0, expenseSum = 0;
    for (const jet::Row& row : tableOf(db, u"Bank").rows) {
        if (units(row[2]) % 100 != 0)
            return "Bank operation " + std::to_string(whole(row[0])) + " is not in whole kopecks";
        days[date(row[1])].bank += units(row[2]);
        bankSum += units(row[2]);
    }
    for (const jet::Row& row : tableOf(db, u"Bills").rows) {
        if (units(row[3]) % 100 != 0 || units(row[3]) < 0)
            return "expense " + std::to_string(whole(row[0])) + " is negative or not in whole kopecks";
        days[date(row[1])].purses[whole(row[6])] -= units(row[3]);
        expenseSum += units(row[3]);
    }
    for (const PurseTransfer& t : transfers) {
        days[jetDay(t.day)].bank -= t.units;
        days[jetDay(t.day)].purses[t.purse] += t.units;
    }
    std::int64_t bank = 0;
    std::map<std::int32_t, std::int64_t> purses;
    if (std::string problem = replayDays(days, bank, purses); !problem.empty())
        return problem;
    const std::int64_t stored = storedBalance(db);
    if (stored != bankSum - expenseSum)
        return "OSTATOK " + std::to_string(stored) + " is not deposits - withdrawals - expenses " +
               std::to_string(bankSum - expenseSum);
    std::int64_t inPurses = 0;
    for (const jet::Row& row : tableOf(db, u"Purse").rows) {
        if (units(row[1]) != purses[whole(row[0])] || units(row[1]) % 100 != 0)
            return "purse " + std::to_string(whole(row[0])) + " holds " + std::to_string(units(row[1])) +
                   " instead of " + std::to_string(purses[whole(row[0])]);
        inPurses += units(row[1]);
    }
    if (bank + inPurses != stored)
        return "bank part and purses do not add up to OSTATOK";
    return {};
}

std::string checkOrder(const jet::Table& table, std::chrono::sys_days first, std::chrono::sys_days last)
{
    double previous = jetDay(first);
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const jet::Row& row = table.rows[i];
        if (whole(row[0]) != static_cast<std::int32_t>(i + 1))
            return jet::toUtf8(table.name) + " numbers are not 1, 2, 3...";
        if (date(row[1]) < previous || date(row[1]) > jetDay(last))
            return jet::toUtf8(table.name) + " operation " + std::to_string(i + 1) + " is out of date order";
        previous = date(row[1]);
    }
    if (table.lastAutoNumber != static_cast<std::int32_t>(table.rows.size()))
        return jet::toUtf8(table.name) + " hands out the wrong next number";
    return {};
}

std::set<std::int32_t> codesOf(const jet::Table& table)
{
    std::set<std::int32_t> codes;
    for (const jet::Row& row : table.rows)
        codes.insert(whole(row[0]));
    return codes;
}

std::string checkShape(const jet::Database& db, const SampleOptions& options)
{
    if (std::string mismatch = store::schemaMismatch(db); !mismatch.empty())
        return mismatch;
    const jet::Table& bank = tableOf(db, u"Bank");
    const jet::Table& bills = tableOf(db, u"Bills");
    if (bank.rows.size() + bills.rows.size() !=
        static_cast<std::size_t>(12 * options.years * options.opsPerMonth))
        return "wrong number of operations";
    using namespace std::chrono;
    const year_month_day end{options.lastDay};
    const sys_days first{year_month{end.year(), end.month()} / 1 - months{12 * options.years - 1}};
    for (const jet::Table* table : {&bank, &bills})
        if (std::string problem = checkOrder(*table, first, options.lastDay); !problem.empty())
            return problem;
    const std::set<std::int32_t> accounts = codesOf(tableOf(db, u"Bills_Dict"));
    const std::set<std::int32_t> purses = codesOf(tableOf(db, u"Purse_Dict"));
    if (accounts.size() != 12 || purses.size() < 3 || purses.size() > 5 ||
        codesOf(tableOf(db, u"Purse")) != purses)
        return "catalogues of the wrong size";
    for (const jet::Row& row : bills.rows)
        if (!accounts.contains(whole(row[2])) || !purses.contains(whole(row[6])) ||
            std::get<std::u16string>(row[4]).empty())
            return "expense " + std::to_string(whole(row[0])) + " has no name or an unknown account or purse";
    return {};
}

} // namespace

std::string moneyProblems(const jet::Database& db, const std::vector<PurseTransfer>& transfers)
{
    try {
        return checkMoney(db, transfers);
    } catch (const std::exception& error) {
        return std::string("unexpected data: ") + error.what();
    }
}

std::string shapeProblems(const jet::Database& db, const SampleOptions& options)
{
    try {
        return checkShape(db, options);
    } catch (const std::exception& error) {
        return std::string("unexpected data: ") + error.what();
    }
}

} // namespace velmora::test
