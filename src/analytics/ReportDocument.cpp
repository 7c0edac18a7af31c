#include "ReportDocument.h"

#include "AnalyticsTexts.h"

namespace analytics {

namespace {

std::vector<ReportColumn> incomeColumns()
{
    using namespace texts;
    return {{dateColumn, 17, false},
            {amountColumn, 15, true},
            {commentColumn, 56, false},
            {reportNumberColumn, 12, true}};
}

// Six columns, two of them long texts: these need a landscape page.
std::vector<ReportColumn> expenseColumns()
{
    using namespace texts;
    return {{dateColumn, 11, false},  {amountColumn, 10, true},      {commentColumn, 29, false},
            {purseColumn, 15, false}, {reportNumberColumn, 8, true}, {noteColumn, 27, false}};
}

} // namespace

ReportDocument ReportDocument::of(const DetailTable& details, const Period& period,
                                  const QString& accountEntry)
{
    ReportDocument report;
    const bool income = details.kind == DetailKind::Income;
    report.caption = QString::fromUtf8(income ? texts::incomeReportCaption : texts::expenseReportCaption);
    report.title =
        QString::fromUtf8(income ? texts::incomeReportTitle : texts::expenseReportTitle).arg(period.label());
    if (!income)
        report.account = QString::fromUtf8(texts::reportAccount).arg(accountEntry);
    report.columns = income ? incomeColumns() : expenseColumns();
    report.orientation = income ? QPageLayout::Portrait : QPageLayout::Landscape;
    report.lines.reserve(details.rows.size());
    for (const DetailRow& row : details.rows)
        report.lines.push_back(details.cells(row));
    report.totalLabel = QString::fromUtf8(texts::reportTotal);
    report.total = details.total().toDisplayString();
    report.count = QString::fromUtf8(texts::reportCount).arg(details.rows.size());
    return report;
}

} // namespace analytics
