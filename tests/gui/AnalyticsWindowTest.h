#pragma once

#include <QObject>

// The analytics window driven through its controls: opening, "Пересчитать"
// after changing month, year and account, the option buttons, bad input, the
// two reports rendered to PDF, and the month and year handed to the charts.
class AnalyticsWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void opensFromTheMainWindowForTodaysMonth();
    void recalculateFollowsMonthYearAndAccount();
    void expenseDetailsWithoutAccountSayWhatIsMissing();
    void typedMonthsAndYearsThatAreNoneShowEmptyFigures();
    void reportsPrintTheDetailList();
    void chartsGetMonthAndYearOnlyWhenTicked();
};
