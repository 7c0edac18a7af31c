// The charts window's data on a household file of 100,000 operations (ten
// years): both charts' sums by account, for a month and its year, with and
// without a threshold, as one drawing reads them. The data file is already
// decoded, as it is while the program runs.
#include "SampleData.h"

#include "charts/ExpenseCharts.h"
#include "jet/Writer.h"
#include "store/Store.h"

#include <QDir>
#include <QTemporaryDir>

#include "support/SampleFolder.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <stdexcept>

namespace {

constexpr int kOperations = 100'000;

void readCharts(benchmark::State& state, const QString& thresholdField)
{
    store::Store& store = bench::sampleStore(kOperations);
    const auto period = analytics::Period::choose(QStringLiteral("6 - Июнь"), QStringLiteral("2025"), {});
    const auto threshold = charts::Threshold::fromField(thresholdField);
    for (auto _ : state) {
        const auto drawn = charts::ExpenseCharts::read(store, period, threshold);
        if (!drawn || !drawn->month.hasExpenses())
            state.SkipWithError("no expenses read");
        benchmark::DoNotOptimize(drawn);
    }
}

void BM_ChartsData(benchmark::State& state)
{
    readCharts(state, {});
}
BENCHMARK(BM_ChartsData)->Unit(benchmark::kMillisecond);

void BM_ChartsDataWithThreshold(benchmark::State& state)
{
    readCharts(state, QStringLiteral("5000"));
}
BENCHMARK(BM_ChartsDataWithThreshold)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
