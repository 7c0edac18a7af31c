// Start-up of the program on household files of 10,000, 100,000 (and
// 1,000,000) operations: from creating the frame to a main window with its
// lists and figures filled, on the offscreen platform, with the process's
// peak memory; a refresh of the main window's figures; and a LookupValue on
// the open store, as a handler makes it.
#include "app/Frame.h"
#include "app/MainWindow.h"
#include "support/CountingDialogs.h"
#include "support/GuiBenchmarkMain.h"
#include "support/SampleFolder.h"

#include "store/Store.h"
#include "store/Transaction.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

using bench::CountingDialogs;

const bench::SampleFolder& sampleFolder(const benchmark::State& state)
{
    return bench::sampleFolder(static_cast<int>(state.range(0)));
}

// The largest resident memory of this process so far, in MB; the sample
// files are made in child processes, so it is the program's own.
double peakMemoryMb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

app::FrameOptions benchOptions()
{
    app::FrameOptions options;
    options.today = [] { return QDate(2026, 3, 15); };
    options.splashIntervalMs = 60'000;
    options.log = {};
    return options;
}

void BM_FrameToFilledMainWindow(benchmark::State& state)
{
    const QString dir = sampleFolder(state).dir();
    CountingDialogs dialogs;
    double firstPeak = 0; // later starts reuse memory the first one left to the allocator
    for (auto _ : state) {
        auto frame = std::make_unique<app::Frame>(dir, dialogs, benchOptions());
        frame->show();
        if (!frame->start() || !frame->mainWindow() || dialogs.shown > 0) {
            state.SkipWithError("the main window did not open");
            break;
        }
        QCoreApplication::processEvents();
        state.PauseTiming();
        if (firstPeak == 0)
            firstPeak = peakMemoryMb();
        frame.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["peak_rss_mb"] = firstPeak;
}
BENCHMARK(BM_FrameToFilledMainWindow)->Apply(bench::householdSizes)->MinTime(2.0);

// What every money operation of the main window pays afterwards.
void BM_RefreshMainWindow(benchmark::State& state)
{
    CountingDialogs dialogs;
    app::Frame frame(sampleFolder(state).dir(), dialogs, benchOptions());
    frame.show();
    if (!frame.start() || !frame.mainWindow()) {
        state.SkipWithError("the main window did not open");
        return;
    }
    for (auto _ : state) {
        frame.mainWindow()->refreshListsAndBalances();
        frame.mainWindow()->refreshMonthStatistics();
    }
}
BENCHMARK(BM_RefreshMainWindow)->Apply(bench::householdSizes);

// The stored password as the sign-in window reads it, inside a handler's transaction.
void BM_LookupValueOnOpenStore(benchmark::State& state)
{
    store::Store store(bench::sampleFolder(100'000).dir());
    store::Transaction tx(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(tx.lookupValue("Tech", "F1", "F0 = ?", {QStringLiteral("PW")}, 1));
}
BENCHMARK(BM_LookupValueOnOpenStore)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    return bench::runWithApplication(argc, argv);
}
