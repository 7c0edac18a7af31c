#include "OperationsReport.h"

#include "OperationsWindowTexts.h"

#include "analytics/AnalyticsTexts.h"
#include "operations/OperationTableModel.h"

namespace operations {

analytics::ReportDocument operationsReport(const OperationTableModel& model, const QString& filterLine)
{
    // The list's columns with the amount second, where the report prints the
    // total; each with its share of the page's width.
    using M = OperationTableModel;
    static constexpr std::pair<int, int> kPrinted[M::ColumnCount] = {
        {M::Date, 10}, {M::Amount, 9}, {M::Kind, 9},   {M::Account, 15},
        {M::Name, 20}, {M::Note, 13},  {M::Purse, 15}, {M::Number, 9}};
    analytics::ReportDocument report;
    report.caption = QString::fromUtf8(texts::reportTitle);
    report.title = report.caption;
    report.account = filterLine;
    report.orientation = QPageLayout::Landscape;
    for (const auto& [column, weight] : kPrinted)
        report.columns.push_back({M::headerText(column), weight, column == M::Amount || column == M::Number});
    const int rows = model.rowCount();
    report.lines.reserve(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
        QStringList& line = report.lines.emplace_back();
        for (const auto& printed : kPrinted)
            line.append(model.text(row, printed.first));
    }
    report.totalLabel = QString::fromUtf8(analytics::texts::reportTotal);
    report.total = model.selection().sum.toDisplayString();
    report.count = QString::fromUtf8(analytics::texts::reportCount).arg(rows);
    return report;
}

} // namespace operations
