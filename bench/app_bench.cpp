// Start-up of the program on a household file of 100,000 operations: from
// creating the frame to a main window with its lists and figures filled, on
// the offscreen platform; a refresh of the main window's figures; and a
// LookupValue on the open store, as a handler makes it.
#include "app/Frame.h"
#include "app/MainWindow.h"
#include "support/CountingDialogs.h"
#include "support/SampleFolder.h"

#include "jet/Writer.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <stdexcept>

namespace {

using bench::CountingDialogs;

constexpr int kOperations = 100'000;

const bench::SampleFolder& sampleFolder()
{
    return bench::sampleFolder(kOperations);
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
    const QString dir = sampleFolder().dir();
    CountingDialogs dialogs;
    for (auto _ : state) {
        auto frame = std::make_unique<app::Frame>(dir, dialogs, benchOptions());
        frame->show();
        if (!frame->start() || !frame->mainWindow() || dialogs.shown > 0) {
            state.SkipWithError("the main window did not open");
            break;
        }
        QCoreApplication::processEvents();
        state.PauseTiming();
        frame.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_FrameToFilledMainWindow)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// What every money operation of the main window pays afterwards.
void BM_RefreshMainWindow(benchmark::State& state)
{
    CountingDialogs dialogs;
    app::Frame frame(sampleFolder().dir(), dialogs, benchOptions());
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
BENCHMARK(BM_RefreshMainWindow)->Unit(benchmark::kMillisecond);

// The stored password as the sign-in window reads it, inside a handler's transaction.
void BM_LookupValueOnOpenStore(benchmark::State& state)
{
    store::Store store(sampleFolder().dir());
    store::Transaction tx(store);
    for (auto _ : state)
        benchmark::DoNotOptimize(tx.lookupValue("Tech", "F1", "F0 = ?", {QStringLiteral("PW")}, 1));
}
BENCHMARK(BM_LookupValueOnOpenStore)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
