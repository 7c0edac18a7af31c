#pragma once

#include "DetailTable.h"
#include "Period.h"

#include <QPageLayout>
#include <QString>
#include <QStringList>

#include <vector>

namespace analytics {

struct ReportColumn
{
    QString header;
    int weight = 1; // share of the table's width
    bool alignRight = false;
};

// What a printed report says, before it is laid out on pages: the monthly
// income report ("Статистика поступлений за месяц") or the monthly expense
// report of one account ("Статистика расходов за месяц"), one line per
// operation of the detail list, and the total.
struct ReportDocument
{
    QString caption; // the report's name, for the preview window
    QString title;   // "Статистика поступлений за 03.2005"
    QString account; // "Счет: 5 - Питание"; empty in the income report
    std::vector<ReportColumn> columns;
    std::vector<QStringList> lines;
    QString totalLabel; // printed under the dates
    QString total;      // printed under the amounts
    QString count;      // "Операций: 3", printed beside the total
    QPageLayout::Orientation orientation = QPageLayout::Portrait;

    // The report of a detail list: income or expenses as the list is.
    // `accountEntry` is the account list's entry the expenses belong to.
    static ReportDocument of(const DetailTable& details, const Period& period, const QString& accountEntry);
};

} // namespace analytics
