#include "SampleGenerator.h"

#include "SampleCatalog.h"

#include "store/Schema.h"

#include <algorithm>
#include <stdexcept>

namespace velmora::sample {

using namespace std::chrono;

namespace {

constexpr std::int64_t kRouble = 10000; // Currency units
constexpr std::int64_t kUnixEpochJetDay = 25569;

jet::DateTime jetDate(sys_days day)
{
    return {static_cast<double>(day.time_since_epoch().count() + kUnixEpochJetDay)};
}

std::int64_t roundDown(std::int64_t units, std::int64_t step)
{
    return units / step * step;
}
std::int64_t roundUp(std::int64_t units, std::int64_t step)
{
    return (units + step - 1) / step * step;
}

// Bank rows of a month: salary and advance, the rest other income and withdrawals.
int bankOperationsPerMonth(int opsPerMonth)
{
    return std::clamp(opsPerMonth / 10, 1, opsPerMonth);
}

} // namespace

SampleGenerator::SampleGenerator(const SampleOptions& options) : m_options(options), m_random(options.seed)
{
    if (options.years < 1 || options.opsPerMonth < 1)
        throw std::invalid_argument("sample data needs at least one year and one operation a month");
}

SampleHistory SampleGenerator::run()
{
    const year_month_day end{m_options.lastDay};
    const year_month lastMonth{end.year(), end.month()};
    const year_month firstMonth = lastMonth - months{12 * m_options.years - 1};
    m_history.database = store::preparedDatabase(jetDate(sys_days{firstMonth / 1}).days);
    fillCatalogues();
    const auto monthCount = static_cast<std::size_t>(12 * m_options.years);
    const auto bankRows = static_cast<std::size_t>(bankOperationsPerMonth(m_options.opsPerMonth));
    m_history.database.table(u"Bank")->rows.reserve(monthCount * bankRows);
    m_history.database.table(u"Bills")->rows.reserve(monthCount * (m_options.opsPerMonth - bankRows));
    for (year_month month = firstMonth; month <= lastMonth; month += months{1}) {
        const unsigned lastDay = month == lastMonth ? static_cast<unsigned>(end.day())
                                                    : static_cast<unsigned>((month / last).day());
        generateMonth(month, lastDay, month == firstMonth);
    }
    finish();
    return std::move(m_history);
}

void SampleGenerator::fillCatalogues()
{
    jet::Database& db = m_history.database;
    const auto accounts = expenseAccounts();
    for (std::size_t i = 0; i < accounts.size(); ++i)
        db.table(u"Bills_Dict")
            ->rows.push_back({static_cast<std::int32_t>(i + 1), std::u16string(accounts[i].name)});
    const auto purses = purseKinds();
    const auto purseCount =
        static_cast<std::size_t>(m_random.between(3, static_cast<std::int64_t>(purses.size())));
    for (std::size_t i = 0; i < purseCount; ++i) {
        db.table(u"Purse_Dict")
            ->rows.push_back({static_cast<std::int32_t>(i + 1), std::u16string(purses[i].name), jet::Null{},
                              std::u16string(purses[i].note)});
        m_purseWeights.push_back(purses[i].weight);
    }
    m_purseUnits.assign(purseCount, 0);
}

void SampleGenerator::generateMonth(year_month month, unsigned lastDay, bool first)
{
    const int expenses = m_options.opsPerMonth - bankOperationsPerMonth(m_options.opsPerMonth);
    std::vector<Operation> operations;
    operations.reserve(static_cast<std::size_t>(m_options.opsPerMonth));
    for (int i = 0; i < expenses; ++i)
        operations.push_back(makeExpense(lastDay));
    planPurseReserves(operations);
    addBankOperations(operations, month, lastDay, first);
    std::stable_sort(operations.begin(), operations.end(), [](const Operation& a, const Operation& b) {
        return a.day != b.day ? a.day < b.day : a.kind < b.kind;
    });
    for (const Operation& operation : operations)
        book(operation, sys_days{month / day{operation.day}});
    emptyFullPurses(sys_days{month / day{lastDay}});
}

SampleGenerator::Operation SampleGenerator::makeExpense(unsigned lastDay)
{
    const auto accounts = expenseAccounts();
    const std::size_t account = m_random.weighted(accounts, [](const ExpenseAccount& a) { return a.weight; });
    const ExpenseItem& item =
        accounts[account]
            .items[m_random.weighted(accounts[account].items, [](const ExpenseItem& i) { return i.weight; })];
    const std::int64_t kopecks = m_random.chance(50) ? 0 : m_random.between(0, 99);
    Operation op;
    op.day = static_cast<unsigned>(m_random.between(1, lastDay));
    op.kind = Kind::Expense;
    op.units = (m_random.between(item.minRoubles, item.maxRoubles) * 100 + kopecks) * 100;
    op.account = static_cast<std::int32_t>(account + 1);
    op.purse = static_cast<std::int32_t>(
        m_random.weighted(std::span<const int>(m_purseWeights), [](int weight) { return weight; }) + 1);
    op.name = item.name;
    if (m_random.chance(25))
        op.note = m_random.pick(expenseNotes());
    return op;
}

// Income is sized from the month's expenses so that the household saves a
// little every month; the first month opens with a reserve of about two months.
void SampleGenerator::addBankOperations(std::vector<Operation>& operations, year_month month,
                                        unsigned lastDay, bool first)
{
    std::int64_t spent = 0;
    for (const Operation& op : operations)
        spent += op.units;
    const int bankCount = bankOperationsPerMonth(m_options.opsPerMonth);
    std::int64_t withdrawn = 0;
    for (int i = 2; i < bankCount; ++i) {
        Operation op;
        op.day = static_cast<unsigned>(m_random.between(1, lastDay));
        const bool withdrawal = m_random.chance(70);
        op.kind = withdrawal ? Kind::Withdrawal : Kind::Deposit;
        op.units = std::max(roundDown(spent * m_random.between(2, withdrawal ? 10 : 6) / 100, 100 * kRouble),
                            500 * kRouble);
        op.name = m_random.pick(withdrawal ? withdrawalComments() : extraIncomeComments());
        if (withdrawal)
            withdrawn += op.units;
        operations.push_back(std::move(op));
    }
    const std::int64_t income = std::max(
        roundDown((spent + withdrawn) * m_random.between(105, 125) / 100, 10 * kRouble), 30000 * kRouble);
    const std::int64_t advance = bankCount >= 2 ? roundDown(income * 2 / 5, 10 * kRouble) : 0;
    const std::u16string monthName = monthForComment(static_cast<unsigned>(month.month()));
    Operation salary{
        std::min(5u, lastDay), Kind::Deposit, income - advance, 0, 0, u"Зарплата за " + monthName, {}};
    if (first) {
        salary.day = 1;
        salary.units += roundUp(2 * spent, 1000 * kRouble) + 20000 * kRouble;
        salary.name = u"Остаток на начало учёта и зарплата за " + monthName;
    }
    operations.push_back(std::move(salary));
    if (advance > 0)
        operations.push_back(
            {std::min(20u, lastDay), Kind::Deposit, advance, 0, 0, u"Аванс за " + monthName, {}});
}

void SampleGenerator::book(const Operation& op, sys_days day)
{
    if (op.kind == Kind::Expense)
        return bookExpense(op, day);
    // A withdrawal never takes more than the bank part holds.
    const std::int64_t units = op.kind == Kind::Deposit ? op.units : -std::min(op.units, m_bankUnits);
    m_bankUnits += units;
    m_history.database.table(u"Bank")->rows.push_back(
        {++m_bankNumber, jetDate(day), jet::Currency{units}, std::u16string(op.name)});
}

void SampleGenerator::bookExpense(Operation op, sys_days day)
{
    const auto purse = static_cast<std::size_t>(op.purse - 1);
    if (m_purseUnits[purse] < op.units)
        fillPurse(purse, op.units - m_purseUnits[purse], day);
    op.units = std::min(op.units, m_purseUnits[purse]);
    m_purseUnits[purse] -= op.units;
    m_history.database.table(u"Bills")->rows.push_back({++m_billsNumber, jetDate(day), op.account,
                                                        jet::Currency{op.units}, std::move(op.name),
                                                        std::move(op.note), op.purse});
}

// Each purse is topped up to about half of what the month's expenses will take from it.
void SampleGenerator::planPurseReserves(const std::vector<Operation>& expenses)
{
    m_purseReserves.assign(m_purseUnits.size(), 1000 * kRouble);
    std::vector<std::int64_t> planned(m_purseUnits.size(), 0);
    for (const Operation& op : expenses)
        planned[static_cast<std::size_t>(op.purse - 1)] += op.units;
    for (std::size_t purse = 0; purse < planned.size(); ++purse)
        m_purseReserves[purse] =
            std::max(m_purseReserves[purse], roundUp(planned[purse] / 2, 1000 * kRouble));
}

// Tops the purse up to a comfortable amount in whole thousands, as far as the bank allows.
void SampleGenerator::fillPurse(std::size_t purse, std::int64_t needed, sys_days day)
{
    const std::int64_t units =
        std::min(roundUp(std::max(needed, m_purseReserves[purse]), 1000 * kRouble), m_bankUnits);
    if (units <= 0)
        return;
    m_bankUnits -= units;
    m_purseUnits[purse] += units;
    m_history.transfers.push_back({day, static_cast<std::int32_t>(purse + 1), units});
}

// At the end of a month a purse holding well over its reserve gives the
// surplus back to the bank; now and then one is emptied down to pocket money.
void SampleGenerator::emptyFullPurses(sys_days day)
{
    for (std::size_t purse = 0; purse < m_purseUnits.size(); ++purse) {
        std::int64_t keep = m_purseReserves[purse];
        if (2 * m_purseUnits[purse] <= 3 * keep)
            keep = m_random.chance(10) ? 1000 * kRouble : m_purseUnits[purse];
        const std::int64_t units =
            roundDown(std::max<std::int64_t>(m_purseUnits[purse] - keep, 0), 1000 * kRouble);
        if (units == 0)
            continue;
        m_purseUnits[purse] -= units;
        m_bankUnits += units;
        m_history.transfers.push_back({day, static_cast<std::int32_t>(purse + 1), -units});
    }
}

void SampleGenerator::finish()
{
    jet::Database& db = m_history.database;
    std::int64_t whole = m_bankUnits;
    for (std::size_t purse = 0; purse < m_purseUnits.size(); ++purse) {
        whole += m_purseUnits[purse];
        db.table(u"Purse")->rows.push_back(
            {static_cast<std::int32_t>(purse + 1), jet::Currency{m_purseUnits[purse]}});
    }
    db.table(u"Bank")->lastAutoNumber = m_bankNumber;
    db.table(u"Bills")->lastAutoNumber = m_billsNumber;
    for (jet::Row& row : db.table(u"Tech")->rows) {
        if (row[0] == jet::Value{std::u16string(u"OSTATOK")})
            row[2] = jet::Currency{whole};
        else if (row[0] == jet::Value{std::u16string(u"BACKUP")})
            row[3] = jetDate(m_options.lastDay - days{m_random.between(0, 20)});
    }
    const std::int64_t usd = m_random.between(85 * kRouble, 100 * kRouble);
    db.table(u"Cur")->rows = {{std::int32_t{2}, jet::Currency{usd}},
                              {std::int32_t{3}, jet::Currency{usd * m_random.between(105, 112) / 100}}};
}

} // namespace velmora::sample
