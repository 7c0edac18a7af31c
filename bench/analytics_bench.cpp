// The analytics window on household files of 10,000, 100,000 (and 1,000,000)
// operations (ten years): opening Form3 (lists, yearly table, month totals, detail
// list), "Пересчитать" for another month and year with each detail list, and
// laying out and painting a month's report into a PDF file. The data file is
// already decoded, as it is while the program runs.
#include "SampleData.h"

#include "analytics/Recalculation.h"
#include "analytics/ReportDocument.h"
#include "analytics/ReportPainter.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "jet/Writer.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "ui/Dialogs.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include "support/CountingDialogs.h"
#include "support/GuiBenchmarkMain.h"
#include "support/SampleFolder.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>

namespace {

using bench::CountingDialogs;
using bench::sampleStore;

const QDate kToday(2026, 3, 15);

template <typename T> T* child(QWidget& window, const char* name)
{
    return window.findChild<T*>(QString::fromLatin1(name));
}

void BM_OpenAnalyticsWindow(benchmark::State& state)
{
    store::Store& store = sampleStore(static_cast<int>(state.range(0)));
    CountingDialogs dialogs;
    for (auto _ : state) {
        analytics::AnalyticsWindow window(store, dialogs, [] { return kToday; });
        window.load();
        benchmark::DoNotOptimize(&window);
    }
    if (dialogs.shown > 0)
        state.SkipWithError("a box was shown");
}
BENCHMARK(BM_OpenAnalyticsWindow)->Apply(bench::householdSizes);

// "Пересчитать" for November 2024: income details, or the expenses of the first account.
void BM_Recalculate(benchmark::State& state)
{
    store::Store& store = sampleStore(static_cast<int>(state.range(0)));
    CountingDialogs dialogs;
    analytics::AnalyticsWindow window(store, dialogs, [] { return kToday; });
    window.load();
    child<QComboBox>(window, "Combo1")->setCurrentIndex(10);
    child<QComboBox>(window, "Combo2")->setEditText(QStringLiteral("2024"));
    child<QComboBox>(window, "R2")->setCurrentIndex(0);
    child<QRadioButton>(window, state.range(1) ? "O2" : "O1")->setChecked(true);
    auto* recalculate = child<QPushButton>(window, "B1");
    for (auto _ : state)
        recalculate->click();
    if (dialogs.shown > 0)
        state.SkipWithError("a box was shown");
    state.SetLabel(state.range(1) ? "expense details" : "income details");
}
BENCHMARK(BM_Recalculate)->Apply([](benchmark::internal::Benchmark* b) {
    bench::householdSizesWith(b, {0, 1});
});

// The month's expense report of the busiest account, laid out and painted to PDF.
void BM_ExpenseReportToPdf(benchmark::State& state)
{
    store::Store& store = sampleStore(static_cast<int>(state.range(0)));
    const auto period = analytics::Period::choose(QStringLiteral("11"), QStringLiteral("2024"), kToday);
    const QString account = QStringLiteral("1 - Питание");
    const auto read = analytics::Recalculation::read(
        store, period, analytics::DetailRequest{analytics::DetailKind::Expenses, account});
    if (!read || !read->details) {
        state.SkipWithError("the sample file does not open");
        return;
    }
    const analytics::ReportDocument report = analytics::ReportDocument::of(*read->details, period, account);
    QTemporaryDir dir;
    for (auto _ : state)
        analytics::ReportPainter::writePdf(report, dir.filePath(QStringLiteral("report.pdf")));
    state.SetLabel(std::to_string(report.lines.size()) + " lines");
}
BENCHMARK(BM_ExpenseReportToPdf)->Apply(bench::householdSizes);

} // namespace

int main(int argc, char** argv)
{
    return bench::runWithApplication(argc, argv);
}
