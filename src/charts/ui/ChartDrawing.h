#pragma once

#include "charts/ChartData.h"

#include <QColor>

class QChartView;
class QLabel;

namespace charts {

// The one routine that draws a chart of the charts window, the month's and
// the year's alike: one bar per account in one category (the period), the
// account names in a legend beside the plot, sums on the bars and in
// tooltips. A period without expenses hides the chart and shows the "no
// expenses" label lying under it; a later drawing with data shows it again.
class ChartDrawing
{
public:
    static void draw(QChartView* view, QLabel* noExpenses, const ChartData& data);

    // The colour of an account's colour slot; slots beyond the fixed palette
    // get further hues that stay apart from their neighbours.
    static QColor colour(int slot);
};

} // namespace charts
