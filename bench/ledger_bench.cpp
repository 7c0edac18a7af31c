// The main window's money operations on household files of 10,000, 100,000
// (and 1,000,000) operations: each handler's statements and its atomic save,
// as one click runs them, with the time of each over the physical limit of
// writing the file. The "statements only" variant rolls back instead of
// saving, so the difference is the price of writing the file.
#include "support/PhysicalLimit.h"
#include "support/SampleFolder.h"

#include "ledger/Bank.h"
#include "ledger/Expenses.h"
#include "ledger/PurseCatalogue.h"
#include "ledger/PurseOperations.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using bench::sampleFolder;

// A store that has read its file already, as the program's store has after start-up.
std::unique_ptr<store::Store> openedStore(const benchmark::State& state)
{
    auto store = std::make_unique<store::Store>(sampleFolder(static_cast<int>(state.range(0))).dir());
    store::Transaction(*store).commit();
    return store;
}

const store::Amount kAmount = store::Amount::fromUnits(1'234'500); // 123,45
const QDate kDay(2026, 3, 31);

void check(benchmark::State& state, const store::Outcome& outcome)
{
    if (!outcome)
        state.SkipWithError("the operation was not saved");
}

void compareWithLimit(benchmark::State& state)
{
    bench::reportAgainstLimit(state, sampleFolder(static_cast<int>(state.range(0))).dir());
}

void BM_BankDeposit(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::Bank bank(*store);
    for (auto _ : state)
        check(state, bank.record({kDay, kAmount, ledger::BankDirection::Deposit, "Зарплата"}));
    compareWithLimit(state);
}

void BM_BankWithdrawal(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::Bank bank(*store);
    for (auto _ : state)
        check(state, bank.record({kDay, kAmount, ledger::BankDirection::Withdrawal, {}}));
    compareWithLimit(state);
}

void BM_PurseMove(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::PurseOperations purses(*store);
    bool in = true;
    for (auto _ : state) {
        const auto direction = in ? ledger::PurseDirection::PutIn : ledger::PurseDirection::TakeOut;
        check(state, purses.move(1, kAmount, direction));
        in = !in;
    }
    compareWithLimit(state);
}

void BM_Expense(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::Expenses expenses(*store);
    for (auto _ : state)
        check(state, expenses.book({kDay, 1, kAmount, "Хлеб", "к обеду", 1}));
    compareWithLimit(state);
}

void BM_OpenPurse(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::PurseCatalogue catalogue(*store);
    for (auto _ : state)
        benchmark::DoNotOptimize(catalogue.open(1));
}

void BM_RenamePurse(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::PurseCatalogue catalogue(*store);
    for (auto _ : state)
        check(state, catalogue.rename(1, "Наличные", "на каждый день"));
    compareWithLimit(state);
}

// A new purse and, untimed, its removal, so the catalogue stays the same size.
void BM_NewPurse(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::PurseCatalogue catalogue(*store);
    for (auto _ : state) {
        const store::Result<int> code = catalogue.create("Отпуск");
        state.PauseTiming();
        check(state, code ? catalogue.remove(code.value()) : store::Outcome(code));
        state.ResumeTiming();
    }
    compareWithLimit(state);
}

void BM_DeletePurse(benchmark::State& state)
{
    auto store = openedStore(state);
    ledger::PurseCatalogue catalogue(*store);
    for (auto _ : state) {
        state.PauseTiming();
        const store::Result<int> code = catalogue.create("Отпуск");
        state.ResumeTiming();
        check(state, code ? catalogue.remove(code.value()) : store::Outcome(code));
    }
    compareWithLimit(state);
}

// The expense's statements without the save: what the handler costs before
// the file is written.
void BM_ExpenseStatementsOnly(benchmark::State& state)
{
    auto store = openedStore(state);
    for (auto _ : state) {
        store::Transaction outer(*store); // left without commit: rolled back, nothing written
        ledger::Expenses(*store).book({kDay, 1, kAmount, "Хлеб", "к обеду", 1});
    }
}

void sizes(benchmark::internal::Benchmark* b)
{
    bench::householdSizes(b);
    b->Repetitions(5)->ReportAggregatesOnly(true);
}

BENCHMARK(BM_BankDeposit)->Apply(sizes);
BENCHMARK(BM_BankWithdrawal)->Apply(sizes);
BENCHMARK(BM_PurseMove)->Apply(sizes);
BENCHMARK(BM_Expense)->Apply(sizes);
BENCHMARK(BM_OpenPurse)->Apply(sizes);
BENCHMARK(BM_RenamePurse)->Apply(sizes);
BENCHMARK(BM_NewPurse)->Apply(sizes);
BENCHMARK(BM_DeletePurse)->Apply(sizes);
BENCHMARK(BM_ExpenseStatementsOnly)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
