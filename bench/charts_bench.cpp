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

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <stdexcept>

namespace {

constexpr int kOperations = 100'000;

class SampleStore
{
public:
    SampleStore()
    {
        if (!m_dir.isValid())
            throw std::runtime_error("cannot create a temporary folder");
        velmora::SampleOptions options;
        options.years = 10;
        options.opsPerMonth = kOperations / 120;
        options.seed = 2031;
        options.lastDay = std::chrono::sys_days{std::chrono::year{2025} / 12 / 31};
        jet::writeFileAtomically(QDir(m_dir.path()).filePath("velmora.mdb").toStdString(),
                                 jet::encodeDatabase(velmora::makeSampleDatabase(options)));
        m_store = std::make_unique<store::Store>(m_dir.path());
        m_store->verify();
    }
    store::Store& store() { return *m_store; }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<store::Store> m_store;
};

SampleStore& sample()
{
    static SampleStore instance;
    return instance;
}

void readCharts(benchmark::State& state, const QString& thresholdField)
{
    store::Store& store = sample().store();
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
