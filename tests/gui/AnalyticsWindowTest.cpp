// The analytics window and the charts it opens: the lists reaching the
// recalculation, the grids and figures it fills, the reports handed to the
// viewer, and the period handed over to the charts window.
#include "analytics/ui/AnalyticsWindow.h"
#include "WindowDriver.h"
#include "analytics/AnalyticsTexts.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsTexts.h"
#include "charts/ui/ChartsWindow.h"
#include "store/Store.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTest>

using namespace velmora::test;

namespace {

// 2005 with income and expenses in March, expenses in November paid from a
// purse deleted since, and today's month (15.03.2026).
DataBuilder household()
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(1200, "Подарки").purse(1, "Основной", "100");
    data.bank(QDate(2005, 3, 1), "5000", "Зарплата")
        .bank(QDate(2005, 3, 15), "-6000,5", "Снятие на ремонт")
        .bank(QDate(2005, 11, 20), "1200", "Премия")
        .bank(QDate(2026, 3, 2), "100", "Сегодняшний месяц");
    data.bill(QDate(2005, 3, 10), 1, "120,5")
        .bill(QDate(2005, 3, 12), 1200, "1500")
        .bill(QDate(2005, 11, 15), 2, "250", 2)
        .bill(QDate(2026, 3, 5), 2, "7");
    for (int code = 3; code <= 9; ++code) // January 2004: seven accounts with expenses
        data.account(code, QString::number(code)).bill(QDate(2004, 1, 1), code, "1");
    return data;
}

QStringList figures(const Form& f)
{
    return {f.text("T3"), f.text("T4"), f.text("T5"), f.text("T6")};
}

// The rows of a grid, cells joined by "|".
QStringList grid(const Form& f, const char* name)
{
    const QAbstractItemModel* model = qobject_cast<QTableView*>(f.control(name))->model();
    QStringList lines;
    for (int r = 0; r < model->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < model->columnCount(); ++c)
            cells.append(model->index(r, c).data().toString());
        lines.append(cells.join(QLatin1Char('|')));
    }
    return lines;
}

// "Пересчитать" for a month and year typed into the lists, with or without "Диаграмма".
void recalculate(const Form& f, const QString& month, const QString& year, bool charts = false)
{
    f.list("Combo1")->setEditText(month);
    f.list("Combo2")->setEditText(year);
    qobject_cast<QCheckBox*>(f.control("C1"))->setChecked(charts);
    f.click("B1");
}

// What a chart shows: its category, then "legend=value" per bar; empty when hidden.
QStringList chart(const Form& charts, const char* name)
{
    auto* view = qobject_cast<QChartView*>(charts.control(name));
    if (!view->isVisible())
        return {};
    QStringList lines =
        qobject_cast<QBarCategoryAxis*>(view->chart()->axes(Qt::Horizontal).value(0))->categories();
    for (const QBarSet* set : static_cast<QBarSeries*>(view->chart()->series().value(0))->barSets())
        lines.append(set->label() + "=" + QString::number(set->at(0)));
    return lines;
}

} // namespace

class AnalyticsWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void recalculateFollowsMonthYearAndAccount();
    void reportsGetTheDetailList();
    void openChartsTakeTheNextPeriodAndRedrawOnExclude();
    void hiddenChartReturnsWhenItsPeriodHasExpenses();
    void chartsCloseWithTheirButtonAndWithTheMainWindow();
};

void AnalyticsWindowTest::recalculateFollowsMonthYearAndAccount()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const Form f = w.analytics();
    QCOMPARE(f.widget()->windowTitle(), utf8(analytics::texts::windowTitle));
    // Opened on today's month with the lists empty.
    QCOMPARE(f.items("R2").last(), QString("1200 - Подарки"));
    QVERIFY(f.text("Combo1").isEmpty() && f.text("Combo2").isEmpty() && f.text("R2").isEmpty());
    QCOMPARE(grid(f, "DataGrid1"), (QStringList{"2 - Транспорт|||7||||||||||2 - Транспорт|7",
                                                " -- ИТОГО -- |0|0|7|0|0|0|0|0|0|0|0|0| -- ИТОГО -- |7"}));
    QCOMPARE(grid(f, "DataGrid2"), QStringList{"02.03.2026|100|Сегодняшний месяц|4"});
    QVERIFY(f.enabled("B2") && !f.enabled("B3"));
    // A second Аналитика brings the same window forward.
    w.main().click("B1");
    QCOMPARE(w.frame().findChildren<analytics::AnalyticsWindow*>().size(), 1);
    f.choose("Combo2", "2005");
    f.choose("Combo1", "3 - Март");
    // Changing the lists alone rebuilds nothing.
    QCOMPARE(figures(f), (QStringList{"100", "100", "7", "7"}));
    f.click("B1");
    QCOMPARE(figures(f), (QStringList{"-1000,5", "199,5", "1620,5", "1870,5"}));
    QCOMPARE(grid(f, "DataGrid1").last(),
             " -- ИТОГО -- |0|0|1620,5|0|0|0|0|0|0|0|250|0| -- ИТОГО -- |1870,5");
    QCOMPARE(grid(f, "DataGrid2"),
             (QStringList{"15.03.2005|-6000,5|Снятие на ремонт|2", "01.03.2005|5000|Зарплата|1"}));
    // "Расход" without an account: the message, the figures follow, the detail list stays.
    f.click("O2");
    QVERIFY(!f.enabled("B2") && f.enabled("B3"));
    f.choose("Combo1", "11 - Ноябрь");
    f.click("B1");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: " + utf8(analytics::texts::chooseAccount)});
    QCOMPARE(figures(f), (QStringList{"1200", "199,5", "250", "1870,5"}));
    QCOMPARE(grid(f, "DataGrid2").size(), 2);
    f.choose("R2", "2 - Транспорт");
    f.click("B1");
    QCOMPARE(f.text("DataGrid2Caption"), QString("Расход"));
    QCOMPARE(grid(f, "DataGrid2"), QStringList{"15.11.2005|250|покупка|(кошелек удален)|3|"});
    f.click("O1");
    QVERIFY(f.enabled("B2") && !f.enabled("B3"));
    QVERIFY(w.newBoxes().isEmpty());
}

void AnalyticsWindowTest::reportsGetTheDetailList()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const Form f = w.analytics();
    QList<analytics::ReportDocument> reports;
    w.frame().analyticsWindow()->setReportViewer(
        [&reports](const analytics::ReportDocument& report) { reports.append(report); });
    f.choose("Combo2", "2005");
    f.choose("Combo1", "3 - Март");
    f.click("B2");
    f.click("O2");
    f.list("R2")->setEditText({});
    f.click("B3"); // no account: the message only, no report
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: " + utf8(analytics::texts::chooseAccount)});
    f.choose("R2", "1 - Питание");
    f.click("B3");
    QCOMPARE(reports.size(), 2);
    QCOMPARE(reports[0].title, QString("Статистика поступлений за 03.2005"));
    QCOMPARE(reports[0].lines.size(), 2u);
    QCOMPARE(reports[0].total, QString("-1000,5"));
    QCOMPARE(reports[1].title, QString("Статистика расходов за 03.2005"));
    QCOMPARE(reports[1].account, QString("Счет: 1 - Питание"));
    QCOMPARE(reports[1].lines,
             (std::vector<QStringList>{{"10.03.2005", "120,5", "покупка", "Основной", "1", ""}}));
}

void AnalyticsWindowTest::openChartsTakeTheNextPeriodAndRedrawOnExclude()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const Form f = w.analytics();
    recalculate(f, "3 - Март", "2005");
    QVERIFY(!w.frame().chartsWindow());
    recalculate(f, "3 - Март", "2005", true);
    const Form charts = w.charts();
    QCOMPARE(charts.widget()->windowTitle(), utf8(charts::texts::windowTitle));
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), charts.widget());
    // The first drawing already shows the period handed over.
    QCOMPARE(chart(charts, "MSChart1"), (QStringList{"03.2005", "Питание=120.5", "Подарки=1500"}));
    QCOMPARE(chart(charts, "MSChart2"),
             (QStringList{"2005", "Питание=120.5", "Транспорт=250", "Подарки=1500"}));
    // An account has one colour in both charts; no two accounts share one.
    const auto colour = [&](const char* name, int bar) {
        const auto* view = qobject_cast<QChartView*>(charts.control(name));
        return static_cast<QBarSeries*>(view->chart()->series().value(0))->barSets().at(bar)->color();
    };
    QVERIFY(colour("MSChart1", 0) == colour("MSChart2", 0) && colour("MSChart1", 1) == colour("MSChart2", 2));
    QVERIFY(colour("MSChart2", 0) != colour("MSChart2", 1) && colour("MSChart2", 1) != colour("MSChart2", 2));
    // Figures in Russian notation; labels turn upright only when the bars are many.
    const auto series = [&](const char* name) {
        return static_cast<QBarSeries*>(
            qobject_cast<QChartView*>(charts.control(name))->chart()->series().value(0));
    };
    QCOMPARE(series("MSChart1")->chart()->locale().language(), QLocale::Russian);
    QCOMPARE(series("MSChart1")->labelsAngle(), 0);
    // An open window takes the next period into its fields and keeps its drawing until "Исключить".
    recalculate(f, "11 - Ноябрь", "2005", true);
    QCOMPARE(w.charts().widget(), charts.widget());
    QCOMPARE(charts.text("T1"), QString("11 - Ноябрь"));
    QCOMPARE(chart(charts, "MSChart1").value(0), QString("03.2005"));
    charts.click("Command1");
    QCOMPARE(chart(charts, "MSChart1"), (QStringList{"11.2005", "Транспорт=250"}));
    recalculate(f, "13", "2005", true);
    QCOMPARE(charts.text("T1"), QString("11 - Ноябрь"));
    // Above the threshold: a zero bar that keeps its place; 250 is not above 250.
    charts.field("T3")->setText("250");
    charts.click("Command1");
    QCOMPARE(chart(charts, "MSChart2"), (QStringList{"2005", "Питание=120.5", "Транспорт=250", "Подарки=0"}));
    // Enter redraws too.
    charts.field("T3")->setText("120,49");
    QTest::keyClick(charts.field("T3"), Qt::Key_Return);
    QCOMPARE(chart(charts, "MSChart2").mid(1), (QStringList{"Питание=0", "Транспорт=0", "Подарки=0"}));
    QVERIFY(w.dialogs.shown().isEmpty());
    // A word is refused, and the drawing leaves nothing out.
    charts.field("T3")->setText("тысяча");
    charts.click("Command1");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: " + utf8(charts::texts::mustBeNumber)});
    QCOMPARE(chart(charts, "MSChart2").last(), QString("Подарки=1500"));
    // Empty lists hand over today's month and year to a new window.
    charts.widget()->parentWidget()->close();
    QTRY_VERIFY(!w.frame().chartsWindow());
    recalculate(f, {}, {}, true);
    QCOMPARE(chart(w.charts(), "MSChart1"), (QStringList{"03.2026", "Транспорт=7"}));
}

void AnalyticsWindowTest::hiddenChartReturnsWhenItsPeriodHasExpenses()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    recalculate(w.analytics(), "5 - Май", "2005", true);
    const Form charts = w.charts();
    // May 2005 had no expenses: the month chart is hidden and says so, the year's is drawn.
    QVERIFY(chart(charts, "MSChart1").isEmpty() && charts.control("Label4")->isVisible());
    QCOMPARE(chart(charts, "MSChart2").value(0), QString("2005"));
    QVERIFY(!charts.control("Label3")->isVisible());
    charts.field("T2")->setText("abc");
    charts.click("Command1");
    QVERIFY(chart(charts, "MSChart2").isEmpty() && charts.control("Label3")->isVisible());
    // A later drawing with expenses shows both charts again.
    charts.field("T1")->setText("3");
    charts.field("T2")->setText("2005");
    charts.click("Command1");
    QCOMPARE(chart(charts, "MSChart1").value(0), QString("03.2005"));
    QCOMPARE(chart(charts, "MSChart2").value(0), QString("2005"));
    QVERIFY(!charts.control("Label4")->isVisible() && !charts.control("Label3")->isVisible());
    charts.field("T1")->setText("1");
    charts.field("T2")->setText("2004");
    charts.click("Command1");
    QCOMPARE(chart(charts, "MSChart1").size(), 8);
    const auto* view = qobject_cast<QChartView*>(charts.control("MSChart1"));
    QCOMPARE(static_cast<QBarSeries*>(view->chart()->series().value(0))->labelsAngle(), -90);
}

void AnalyticsWindowTest::chartsCloseWithTheirButtonAndWithTheMainWindow()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.closeSplash();
    QTRY_VERIFY(!w.frame().splashWindow());
    const Form analytics = w.analytics();
    recalculate(analytics, "5", "2005", true);
    QCOMPARE(w.frame().mdiArea()->subWindowList().size(), 3);
    w.charts().click("B1");
    QTRY_VERIFY(!w.frame().chartsWindow());
    QCOMPARE(w.frame().mdiArea()->subWindowList().size(), 2);
    recalculate(analytics, "3", "2005", true);
    QVERIFY(w.frame().chartsWindow());
    w.frame().mainWindow()->parentWidget()->close();
    QTRY_VERIFY(!w.frame().chartsWindow());
    QTRY_VERIFY(!w.frame().analyticsWindow());
}

QTEST_MAIN(AnalyticsWindowTest)
#include "AnalyticsWindowTest.moc"
