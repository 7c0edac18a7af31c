// The operations window's work on household files: reading every operation
// into the list (what opening or returning to the window costs), narrowing it
// by a text and by a month, and sorting it by a text column.
#include "support/SampleFolder.h"

#include "operations/OperationTableModel.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <benchmark/benchmark.h>

namespace {

using operations::Filter;
using operations::OperationTableModel;

store::Store& openedStore(const benchmark::State& state)
{
    return bench::sampleStore(static_cast<int>(state.range(0)));
}

void BM_ReadOperations(benchmark::State& state)
{
    store::Store& store = openedStore(state);
    OperationTableModel model;
    for (auto _ : state) {
        std::optional<operations::Journal> journal = operations::Journal::read(store);
        if (!journal)
            state.SkipWithError("the data file could not be read");
        model.setJournal(std::move(*journal), Filter());
    }
    state.counters["rows"] = model.rowCount();
}

// One filter on the list already read: state.range(1) 0 is a text typed in
// the search field, 1 a month's dates, 2 sorting the result by comment.
void BM_FilterOperations(benchmark::State& state)
{
    OperationTableModel model;
    model.setJournal(*operations::Journal::read(openedStore(state)), Filter());
    Filter filter;
    if (state.range(1) == 0)
        filter.text = QStringLiteral("ХЛЕБ");
    if (state.range(1) == 1) {
        filter.from = QDate(2024, 3, 1);
        filter.to = QDate(2024, 3, 31);
    }
    for (auto _ : state) {
        model.setFilter(filter);
        if (state.range(1) == 2)
            model.sort(OperationTableModel::Name, Qt::AscendingOrder);
    }
    state.counters["rows"] = model.rowCount();
}

void sizes(benchmark::internal::Benchmark* b)
{
    bench::householdSizes(b);
    b->Repetitions(5)->ReportAggregatesOnly(true)->Unit(benchmark::kMillisecond);
}

void sizesAndFilters(benchmark::internal::Benchmark* b)
{
    bench::householdSizesWith(b, {0, 1, 2});
    b->Repetitions(5)->ReportAggregatesOnly(true)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_ReadOperations)->Apply(sizes);
BENCHMARK(BM_FilterOperations)->Apply(sizesAndFilters);

} // namespace

BENCHMARK_MAIN();
