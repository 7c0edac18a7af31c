#pragma once

#include <QObject>

// The charts window as the analytics window opens it in the frame: the month
// and year handed over, the redraw on "Исключить", closing.
class ChartsFromAnalyticsTest : public QObject
{
    Q_OBJECT

private slots:
    void tickedRecalculateOpensChartsForTheChosenPeriod();
    void openChartsTakeTheNextPeriodAndRedrawOnExclude();
    void chartsCloseWithTheirButtonAndWithTheMainWindow();
};
