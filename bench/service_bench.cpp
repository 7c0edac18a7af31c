// The service window's operations on a household file of 100,000 operations:
// backup, restore, listing a day's operations, deleting one and moving an
// account's expenses. Each that writes saves the whole file atomically.
#include "support/SampleFolder.h"

#include "jet/Writer.h"
#include "service/Backup.h"
#include "service/ExpenseTransfer.h"
#include "service/OperationDeletion.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr int kOperations = 100'000;

const bench::SampleFolder& sampleFolder()
{
    return bench::sampleFolder(kOperations);
}

// Records the date, then reads, checks and writes the 100,000-operation file.
void BM_Backup(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction(store).commit();
    service::Backup backup(store);
    for (auto _ : state)
        if (!backup.make(QDate(2025, 6, 30)))
            state.SkipWithError("the backup failed");
}
BENCHMARK(BM_Backup)->Unit(benchmark::kMillisecond);

// Reads and checks the backup, replaces the data file, and reads the backup's
// date from it (the store loads the replaced file).
void BM_Restore(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    service::Backup backup(store);
    if (!backup.make(QDate(2025, 6, 30)))
        state.SkipWithError("the backup failed");
    for (auto _ : state)
        if (!backup.restore(QDate(2026, 3, 15)))
            state.SkipWithError("the restore failed");
}
BENCHMARK(BM_Restore)->Unit(benchmark::kMillisecond);

void BM_ListDayOperations(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction(store).commit();
    service::OperationDeletion deletion(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(deletion.list(QDate(2024, 3, 15)));
}
BENCHMARK(BM_ListDayOperations)->Unit(benchmark::kMillisecond);

// The newest expense each time: its balance and purse corrections, the delete
// and the save.
void BM_DeleteExpense(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    service::OperationDeletion deletion(store);
    for (auto _ : state) {
        const store::Rows newest = store::Transaction(store).query("SELECT MAX(F0) FROM Bills");
        if (newest.empty() || !deletion.deleteExpense(newest.front().integer(0)))
            state.SkipWithError("the deletion failed");
    }
}
BENCHMARK(BM_DeleteExpense)->Unit(benchmark::kMillisecond);

// All expenses of account 1 to account 2 and back, one save each.
void BM_MoveExpenses(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction(store).commit();
    service::ExpenseTransfer transfer(store);
    bool forth = true;
    for (auto _ : state) {
        if (!(forth ? transfer.move(1, 2) : transfer.move(2, 1)))
            state.SkipWithError("the move failed");
        forth = !forth;
    }
}
BENCHMARK(BM_MoveExpenses)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
