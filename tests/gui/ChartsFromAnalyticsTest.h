#pragma once

#include <QObject>

// The charts window Form4 as the analytics window opens it in the frame: its
// captions, the month and year handed over, the bars drawn, the redraw on
// "Исключить" with the threshold, hidden charts and closing.
class ChartsFromAnalyticsTest : public QObject
{
    Q_OBJECT

private slots:
    void tickedRecalculateOpensChartsForTheChosenPeriod();
    void openChartsTakeTheNextPeriodAndRedrawOnExclude();
    void hiddenChartReturnsWhenItsPeriodHasExpenses();
    void chartsCloseWithTheirButtonAndWithTheMainWindow();
};
