// The operations window's work on household files: reading every operation
// into the list (what opening or returning to the window costs), narrowing it
// by a text and by a month, sorting it by a text column, deleting an
// operation and undoing it, and printing the longest list it prints.
#include "support/GuiBenchmarkMain.h"
#include "support/SampleFolder.h"

#include "analytics/ReportPainter.h"
#include "operations/Deletion.h"
#include "operations/OperationTableModel.h"
#include "operations/Trash.h"
#include "operations/ui/OperationsReport.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <QApplication>
#include <QTemporaryDir>

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

// The newest operation deleted into the trash and put back by the undo: two
// clicks, two durable saves. The trash exists already, as after the first
// deletion in a file.
void BM_DeleteAndUndo(benchmark::State& state)
{
    store::Store& store = openedStore(state);
    const operations::Operation newest = operations::Journal::read(store)->at(0);
    for (auto _ : state) {
        const store::Result<std::int32_t> deleted = operations::deleteOperations(store, {newest});
        if (!deleted || !operations::Trash(store).undo(deleted.value(), store.readings()))
            state.SkipWithError("the deletion or its undo failed");
    }
}

// The first deletion in a file without a trash: the save writes the whole
// file, with the new table.
void BM_FirstDeletion(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const bench::SampleFolder folder(static_cast<int>(state.range(0)));
        store::Store store(folder.dir());
        const operations::Operation newest = operations::Journal::read(store)->at(0);
        state.ResumeTiming();
        if (!operations::deleteOperations(store, {newest}))
            state.SkipWithError("the deletion failed");
    }
}

// The list of the newest operations, as long as it may be printed, laid out
// and painted to PDF.
void BM_PrintList(benchmark::State& state)
{
    OperationTableModel model;
    model.setJournal(*operations::Journal::read(openedStore(state)), Filter());
    analytics::ReportDocument report = operations::operationsReport(model, QStringLiteral("Все операции"));
    report.lines.resize(std::min(report.lines.size(), operations::kMostPrintedRows));
    QTemporaryDir dir;
    for (auto _ : state)
        analytics::ReportPainter::writePdf(report, dir.filePath(QStringLiteral("list.pdf")));
    state.SetLabel(std::to_string(report.lines.size()) + " lines");
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
BENCHMARK(BM_DeleteAndUndo)->Apply(sizes);
BENCHMARK(BM_FirstDeletion)->Apply(bench::householdSizes)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrintList)->Apply(bench::householdSizes)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return bench::runWithApplication(argc, argv);
}
