// The store on a household file of 100,000 operations: opening it (decode and
// load into SQLite), one LookupValue, a month sum, one small handler
// transaction with its atomic save, and the automatic copies.
#include "support/SampleFolder.h"

#include "jet/Writer.h"
#include "store/Copies.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

constexpr int kOperations = 100'000;

const bench::SampleFolder& sampleFolder()
{
    return bench::sampleFolder(kOperations);
}

void BM_OpenStore(benchmark::State& state)
{
    const QString dir = sampleFolder().dir();
    for (auto _ : state) {
        store::Store store(dir);
        store::Transaction(store).commit();
    }
}
BENCHMARK(BM_OpenStore)->Unit(benchmark::kMillisecond);

// Inside a handler's transaction: the SQLite lookup only.
void BM_LookupValueInTransaction(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction tx(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(tx.lookupValue("Tech", "F2", "F0 = ?", {"OSTATOK"}, 2));
}
BENCHMARK(BM_LookupValueInTransaction)->Unit(benchmark::kMicrosecond);

// A lookup on its own: takes and releases the lock and checks the file on disk.
void BM_LookupValueOnItsOwn(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction(store).commit();
    for (auto _ : state) {
        store::Transaction tx(store);
        benchmark::DoNotOptimize(tx.lookupValue("Tech", "F2", "F0 = ?", {"OSTATOK"}, 2));
        tx.commit();
    }
}
BENCHMARK(BM_LookupValueOnItsOwn)->Unit(benchmark::kMicrosecond);

void BM_MonthSumOfExpenses(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction tx(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(tx.query("SELECT SUM(F3) AS SUM1 FROM Bills WHERE F1 >= ? AND F1 < ?",
                                          {"2024-03-01", "2024-04-01"}));
}
BENCHMARK(BM_MonthSumOfExpenses)->Unit(benchmark::kMillisecond);

// A deposit per iteration; `between` runs outside the measured time.
void depositEachTime(benchmark::State& state, store::Store& store, const std::function<void()>& between = {})
{
    for (auto _ : state) {
        if (between) {
            state.PauseTiming();
            between();
            state.ResumeTiming();
        }
        store::Transaction tx(store);
        const store::Amount amount = store::Amount::fromUnits(1'000'000);
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2025, 6, 30), amount, "Зарплата"});
        tx.execute("UPDATE Tech SET F2 = F2 + ? WHERE F0 = 'OSTATOK'", {amount});
        if (!tx.commit())
            state.SkipWithError("the save failed");
    }
}

// A deposit: one insert, one balance update, then the whole file encoded,
// checked by decoding, and written atomically.
void BM_DepositTransaction(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction(store).commit();
    depositEachTime(state, store);
}
BENCHMARK(BM_DepositTransaction)->Unit(benchmark::kMillisecond);

// The same deposit with automatic copies kept: on a new day each time, so
// every save first copies the file as it was (state.range(0) == 1), or on
// one day whose copy exists, as every click after the first (0). The day's
// copy is finished beside the click; the wait for the last one is not counted.
void BM_DepositWithCopies(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    QDateTime now(QDate(2026, 1, 1), QTime(12, 0));
    const bool newDay = state.range(0) == 1;
    store.keepCopies([&] { return newDay ? (now = now.addDays(1)) : now; });
    store::Transaction(store).commit();
    depositEachTime(state, store, [&] { store::Copies(store).finishPending(); });
    store::Copies(store).finishPending();
    std::filesystem::remove_all(std::filesystem::path(sampleFolder().dir().toStdString()) /
                                "velmora_backups");
}
BENCHMARK(BM_DepositWithCopies)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The list of copies with as many copies of the file as the copies' folder
// keeps (ten at most). state.range(1): 0, every copy known from an earlier
// listing; 1, every copy touched before the call, as on the first opening,
// and read and judged (what filling in the whole list costs); 2, touched,
// and only listed (what the click that opens the list costs: the dialog
// reads the copies on a worker thread).
void BM_ListCopies(benchmark::State& state)
{
    namespace fs = std::filesystem;
    store::Store store(bench::sampleFolder(static_cast<int>(state.range(0))).dir());
    const fs::path data = store.dataFilePath().toStdString();
    const fs::path folder = data.parent_path() / "velmora_backups";
    fs::create_directories(folder);
    const auto fitting = store::Copies::kSizeLimit / static_cast<std::int64_t>(fs::file_size(data));
    std::vector<fs::path> copies;
    for (int day = 1; day <= std::clamp<std::int64_t>(fitting, 1, 10); ++day) {
        const QDateTime made(QDate(2026, 1, day), QTime(9, 30));
        copies.push_back(folder / store::Copies::fileName(made, store::CopyReason::DayStart).toStdString());
        fs::copy_file(data, copies.back(), fs::copy_options::overwrite_existing);
    }
    const bool touched = state.range(1) > 0;
    const bool judged = state.range(1) < 2;
    benchmark::DoNotOptimize(store::Copies(store).list());
    for (auto _ : state) {
        if (touched) {
            state.PauseTiming();
            for (const fs::path& copy : copies)
                fs::last_write_time(copy, fs::last_write_time(copy) + std::chrono::seconds(1));
            state.ResumeTiming();
        }
        benchmark::DoNotOptimize(judged ? store::Copies(store).list() : store::Copies(store).listed());
    }
    state.counters["copies"] = static_cast<double>(copies.size());
    fs::remove_all(folder);
}
BENCHMARK(BM_ListCopies)->Apply([](benchmark::internal::Benchmark* b) {
    bench::householdSizesWith(b, {0, 1, 2});
});

} // namespace

BENCHMARK_MAIN();
