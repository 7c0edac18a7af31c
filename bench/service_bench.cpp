// The service window's operations on household files of 10,000, 100,000 (and
// 1,000,000) operations: accounts, password, rates, listing a day, deleting
// operations, moving expenses, backup, restore and clearing. Each that writes
// saves the whole file atomically; its time is also given over the physical
// limit of writing that file.
#include "support/PhysicalLimit.h"
#include "support/SampleFolder.h"

#include "service/AccountCatalogue.h"
#include "service/Backup.h"
#include "service/Clearing.h"
#include "service/CurrencyRates.h"
#include "service/ExpenseTransfer.h"
#include "service/OperationDeletion.h"
#include "service/Password.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using bench::sampleFolder;

int operations(const benchmark::State& state)
{
    return static_cast<int>(state.range(0));
}

// A store that has read its file already, as the program's store has after start-up.
std::unique_ptr<store::Store> openedStore(const benchmark::State& state)
{
    auto store = std::make_unique<store::Store>(sampleFolder(operations(state)).dir());
    store::Transaction(*store).commit();
    return store;
}

void check(benchmark::State& state, bool done)
{
    if (!done)
        state.SkipWithError("the operation was not saved");
}

void check(benchmark::State& state, const store::Outcome& outcome)
{
    check(state, outcome.isDone());
}

void compareWithLimit(benchmark::State& state)
{
    bench::reportAgainstLimit(state, sampleFolder(operations(state)).dir());
}

void BM_AddAccount(benchmark::State& state)
{
    auto store = openedStore(state);
    service::AccountCatalogue accounts(*store);
    for (auto _ : state) {
        const store::Result<int> code = accounts.add(QStringLiteral("Отпуск"));
        state.PauseTiming();
        check(state, code ? accounts.remove(code.value()) : store::Outcome(code));
        state.ResumeTiming();
    }
    compareWithLimit(state);
}

void BM_RenameAccount(benchmark::State& state)
{
    auto store = openedStore(state);
    service::AccountCatalogue accounts(*store);
    bool other = true;
    for (auto _ : state) {
        check(state, accounts.rename(1, other ? QStringLiteral("Еда") : QStringLiteral("Питание")));
        other = !other;
    }
    compareWithLimit(state);
}

void BM_DeleteAccount(benchmark::State& state)
{
    auto store = openedStore(state);
    service::AccountCatalogue accounts(*store);
    for (auto _ : state) {
        state.PauseTiming();
        const store::Result<int> code = accounts.add(QStringLiteral("Отпуск"));
        state.ResumeTiming();
        check(state, code ? accounts.remove(code.value()) : store::Outcome(code));
    }
    compareWithLimit(state);
}

// A password set and, untimed, removed again, so that the file stays without one.
void BM_SetPassword(benchmark::State& state)
{
    auto store = openedStore(state);
    service::Password password(*store);
    for (auto _ : state) {
        check(state, password.set(QStringLiteral("секрет")));
        state.PauseTiming();
        check(state, password.remove());
        state.ResumeTiming();
    }
    compareWithLimit(state);
}

void BM_WriteRates(benchmark::State& state)
{
    auto store = openedStore(state);
    service::CurrencyRates rates(*store);
    std::int64_t cents = 9'000;
    for (auto _ : state) {
        const auto rate = store::Amount::fromUnits(100 * ++cents);
        check(state, rates.write(rate, rate));
    }
    compareWithLimit(state);
}

void BM_ListDayOperations(benchmark::State& state)
{
    auto store = openedStore(state);
    service::OperationDeletion deletion(*store);
    for (auto _ : state)
        benchmark::DoNotOptimize(deletion.list(QDate(2024, 3, 15)));
}

// The newest operation each time: the balance correction, the delete and the save.
void BM_DeleteBankOperation(benchmark::State& state)
{
    auto store = openedStore(state);
    service::OperationDeletion deletion(*store);
    for (auto _ : state) {
        state.PauseTiming();
        const store::Rows newest = store::Transaction(*store).query("SELECT MAX(F0) FROM Bank");
        state.ResumeTiming();
        check(state, !newest.empty() && deletion.deleteBankOperation(newest.front().integer(0)));
    }
    compareWithLimit(state);
}

// The newest expense each time: its balance and purse corrections, the delete and the save.
void BM_DeleteExpense(benchmark::State& state)
{
    auto store = openedStore(state);
    service::OperationDeletion deletion(*store);
    for (auto _ : state) {
        state.PauseTiming();
        const store::Rows newest = store::Transaction(*store).query("SELECT MAX(F0) FROM Bills");
        state.ResumeTiming();
        check(state, !newest.empty() && deletion.deleteExpense(newest.front().integer(0)));
    }
    compareWithLimit(state);
}

// All expenses of account 1 to account 2 and back, one save each.
// Each click moves the expenses to where the last one left them.
void moveBackAndForth(benchmark::State& state, store::Store& store)
{
    static bool forth = true;
    service::ExpenseTransfer transfer(store);
    for (auto _ : state) {
        check(state, forth ? transfer.move(1, 2) : transfer.move(2, 1));
        forth = !forth;
    }
    compareWithLimit(state);
}

void BM_MoveExpenses(benchmark::State& state)
{
    moveBackAndForth(state, *openedStore(state));
}

// The same as the program moves them: the copy of the file the move makes
// first (in the sample's copies folder) included.
void BM_MoveExpensesWithCopy(benchmark::State& state)
{
    auto store = openedStore(state);
    QDateTime now(QDate(2026, 3, 15), QTime(9, 0));
    store->keepCopies([&] { return now = now.addSecs(60); });
    moveBackAndForth(state, *store);
}

// Records the date, then reads, checks and writes the whole file as the backup.
void BM_Backup(benchmark::State& state)
{
    auto store = openedStore(state);
    service::Backup backup(*store);
    for (auto _ : state)
        check(state, backup.make(QDate(2025, 6, 30)));
    compareWithLimit(state);
}

// An expense of five years ago deleted since the backup (not timed), then
// the backup read, checked and put in place: the store takes in the rows
// that differ (the expense, the balance, its purse) instead of loading the file.
void BM_Restore(benchmark::State& state)
{
    auto store = openedStore(state);
    service::Backup backup(*store);
    service::OperationDeletion deletion(*store);
    check(state, backup.make(QDate(2025, 6, 30)));
    const store::Rows middle = store::Transaction(*store).query(
        "SELECT F0 FROM Bills ORDER BY F0 LIMIT 1 OFFSET (SELECT COUNT(*) / 2 FROM Bills)");
    for (auto _ : state) {
        state.PauseTiming();
        check(state, !middle.empty() && deletion.deleteExpense(middle.front().integer(0)));
        state.ResumeTiming();
        check(state, backup.restore(QDate(2026, 3, 15)));
    }
    compareWithLimit(state);
}

// Every operation, purse and account removed, from a fresh copy of the sample
// each time; the copy and its reading are not timed.
void BM_ClearAll(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("velmora.mdb"));
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(copy);
        QFile::copy(sampleFolder(operations(state)).dataFile(), copy);
        store::Store store(dir.path());
        store::Transaction(store).commit();
        state.ResumeTiming();
        check(state, service::Clearing(store).clearAll());
    }
    bench::reportAgainstLimit(state, dir.path());
}

void sizes(benchmark::internal::Benchmark* b)
{
    bench::householdSizes(b);
    b->Repetitions(5)->ReportAggregatesOnly(true);
}

BENCHMARK(BM_AddAccount)->Apply(sizes);
BENCHMARK(BM_RenameAccount)->Apply(sizes);
BENCHMARK(BM_DeleteAccount)->Apply(sizes);
BENCHMARK(BM_SetPassword)->Apply(sizes);
BENCHMARK(BM_WriteRates)->Apply(sizes);
BENCHMARK(BM_ListDayOperations)->Apply(sizes);
BENCHMARK(BM_DeleteBankOperation)->Apply(sizes);
BENCHMARK(BM_DeleteExpense)->Apply(sizes);
BENCHMARK(BM_MoveExpenses)->Apply(sizes);
BENCHMARK(BM_MoveExpensesWithCopy)->Apply(sizes);
BENCHMARK(BM_Backup)->Apply(sizes);
BENCHMARK(BM_Restore)->Apply(sizes);
BENCHMARK(BM_ClearAll)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
