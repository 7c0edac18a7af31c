// The analytics window and the charts it opens: the lists reaching the
// recalculation and the reports, and the period handed over to the charts.
// What the figures, grids and bars hold is the queries' business.
#include "analytics/ui/AnalyticsWindow.h"
#include "WindowDriver.h"
#include "analytics/AnalyticsTexts.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsTexts.h"
#include "charts/ui/ChartsWindow.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTest>
#include <QValueAxis>

using namespace velmora::test;

namespace {

// 2005 with income and expenses in March and expenses in November, seven
// accounts with expenses in January 2004, and today's month (15.03.2026).
DataBuilder household()
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(1200, "Подарки").purse(1, "Основной", "100");
    data.bank(QDate(2005, 3, 1), "5000", "Зарплата").bank(QDate(2005, 3, 15), "-6000,5", "Снятие на ремонт");
    data.bank(QDate(2005, 11, 20), "1200", "Премия").bank(QDate(2026, 3, 2), "100", "Сегодняшний месяц");
    data.bill(QDate(2005, 3, 10), 1, "120,5").bill(QDate(2005, 3, 12), 1200, "1500");
    data.bill(QDate(2005, 11, 15), 2, "250").bill(QDate(2026, 3, 5), 2, "7");
    for (int code = 3; code <= 9; ++code)
        data.account(code, QString::number(code)).bill(QDate(2004, 1, 1), code, "1");
    return data;
}

int rowCount(const Form& f, const char* name)
{
    return qobject_cast<QTableView*>(f.control(name))->model()->rowCount();
}

QBarSeries* series(const Form& charts, const char* name)
{
    return static_cast<QBarSeries*>(
        qobject_cast<QChartView*>(charts.control(name))->chart()->series().value(0));
}

// What a chart shows: its category, then "legend=value" per bar; empty when hidden.
QStringList chart(const Form& charts, const char* name)
{
    if (!charts.control(name)->isVisible())
        return {};
    QStringList lines =
        qobject_cast<QBarCategoryAxis*>(series(charts, name)->chart()->axes(Qt::Horizontal).value(0))
            ->categories();
    for (const QBarSet* set : series(charts, name)->barSets())
        lines.append(set->label() + "=" + QString::number(set->at(0)));
    return lines;
}

} // namespace

class AnalyticsWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void recalculationAndReportsFollowTheLists();
    void chartsTakeThePeriodHandedOverAndShowAHiddenChartAgain();
};

void AnalyticsWindowTest::recalculationAndReportsFollowTheLists()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const Form f = w.analytics();
    QList<analytics::ReportDocument> reports;
    w.frame().analyticsWindow()->setReportViewer(
        [&reports](const analytics::ReportDocument& report) { reports.append(report); });
    // Opened on today's month with the lists empty.
    QVERIFY(f.text("Combo1").isEmpty() && f.text("Combo2").isEmpty() && f.text("R2").isEmpty());
    QCOMPARE(f.items("R2").last(), QString("1200 - Подарки"));
    QCOMPARE(rowCount(f, "DataGrid1") * 10 + rowCount(f, "DataGrid2"), 21);
    QVERIFY(f.enabled("B2") && !f.enabled("B3"));
    // A second Аналитика brings the same window forward.
    w.main().click("B1");
    QCOMPARE(w.frame().findChildren<analytics::AnalyticsWindow*>().size(), 1);
    // Changing the lists alone rebuilds nothing.
    w.act(f, "Combo2=2005|Combo1=3 - Март");
    QCOMPARE(f.texts({"T3", "T4", "T5", "T6"}), (QStringList{"100", "100", "7", "7"}));
    f.click("B1");
    QCOMPARE(f.texts({"T3", "T4", "T5", "T6"}), (QStringList{"-1000,5", "199,5", "1620,5", "1870,5"}));
    QCOMPARE(rowCount(f, "DataGrid1") * 10 + rowCount(f, "DataGrid2"), 42);
    f.click("B2");
    // "Расход" without an account: the message, the figures follow, the detail list stays.
    f.click("O2");
    QVERIFY(!f.enabled("B2") && f.enabled("B3"));
    w.act(f, "Combo1=11 - Ноябрь|B1|B3");
    w.expect(QStringList(2, "Ошибка: " + utf8(analytics::texts::chooseAccount)), false);
    QCOMPARE(f.texts({"T3", "T4", "T5", "T6"}), (QStringList{"1200", "199,5", "250", "1870,5"}));
    QCOMPARE(rowCount(f, "DataGrid2"), 2);
    w.act(f, "R2=2 - Транспорт|B1");
    QCOMPARE(f.text("DataGrid2Caption"), QString("Расход"));
    QCOMPARE(rowCount(f, "DataGrid2"), 1);
    f.click("B3");
    QCOMPARE(reports.size(), 2);
    QCOMPARE(QStringList({reports[0].title, reports[0].total, reports[1].title, reports[1].account}),
             QStringList({"Статистика поступлений за 03.2005", "-1000,5", "Статистика расходов за 11.2005",
                          "Счет: 2 - Транспорт"}));
    f.click("O1");
    QVERIFY(f.enabled("B2") && !f.enabled("B3") && w.newBoxes().isEmpty());
}

void AnalyticsWindowTest::chartsTakeThePeriodHandedOverAndShowAHiddenChartAgain()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const Form f = w.analytics();
    w.act(f, "Combo1=3 - Март|Combo2=2005|B1");
    QVERIFY(!w.frame().chartsWindow());
    w.act(f, "C1|B1"); // with "Диаграмма"
    const Form charts = w.charts();
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), charts.widget());
    // The first drawing already shows the period handed over.
    QCOMPARE(chart(charts, "MSChart1"), (QStringList{"03.2005", "Питание=120.5", "Подарки=1500"}));
    QCOMPARE(chart(charts, "MSChart2"),
             (QStringList{"2005", "Питание=120.5", "Транспорт=250", "Подарки=1500"}));
    // An account has one colour in both charts; figures in Russian notation.
    const auto colour = [&](const char* name, int bar) {
        return series(charts, name)->barSets().at(bar)->color();
    };
    QVERIFY(colour("MSChart1", 1) == colour("MSChart2", 2) && colour("MSChart2", 1) != colour("MSChart2", 2));
    QCOMPARE(series(charts, "MSChart1")->chart()->locale().language(), QLocale::Russian);
    const auto* values =
        qobject_cast<QValueAxis*>(series(charts, "MSChart2")->chart()->axes(Qt::Vertical).value(0));
    QVERIFY(values && values->titleText() == "рублей");
    // An open window takes the next period into its fields and keeps its drawing until "Исключить".
    w.act(f, "Combo1=11 - Ноябрь|B1");
    QCOMPARE(w.charts().widget(), charts.widget());
    QCOMPARE(charts.text("T1"), QString("11 - Ноябрь"));
    QCOMPARE(chart(charts, "MSChart1").value(0), QString("03.2005"));
    charts.enter("T3", "200");
    QTest::keyClick(charts.field("T3"), Qt::Key_Return);
    QCOMPARE(chart(charts, "MSChart1"), (QStringList{"11.2005", "Транспорт=0"}));
    QVERIFY(w.dialogs.shown().isEmpty());
    // A word is refused, and the drawing leaves nothing out.
    w.act(charts, "T3=тысяча|Command1");
    w.expect({"Ошибка: " + utf8(charts::texts::mustBeNumber)}, false);
    QCOMPARE(chart(charts, "MSChart2").last(), QString("Подарки=1500"));
    // Закрыть; empty lists hand over today's month and year to a new window.
    charts.click("B1");
    QTRY_VERIFY(!w.frame().chartsWindow());
    w.act(f, "Combo1=|Combo2=|B1");
    const Form again = w.charts();
    QCOMPARE(chart(again, "MSChart1"), (QStringList{"03.2026", "Транспорт=7"}));
    // May 2005 had no expenses: the month chart is hidden and says so, the year's is drawn.
    w.act(f, "Combo1=5 - Май|Combo2=2005|B1");
    again.click("Command1");
    QVERIFY(chart(again, "MSChart1").isEmpty() && again.control("Label4")->isVisible());
    QCOMPARE(chart(again, "MSChart2").value(0), QString("2005"));
    QVERIFY(!again.control("Label3")->isVisible());
    w.act(again, "T2=abc|Command1");
    QVERIFY(chart(again, "MSChart2").isEmpty() && again.control("Label3")->isVisible());
    // A later drawing with expenses shows both charts again; labels turn upright when the bars are many.
    w.act(again, "T1=3|T2=2005|Command1");
    QCOMPARE(chart(again, "MSChart1").value(0) + chart(again, "MSChart2").value(0), QString("03.20052005"));
    QVERIFY(!again.control("Label4")->isVisible() && !again.control("Label3")->isVisible());
    QCOMPARE(series(again, "MSChart1")->labelsAngle(), 0);
    QVERIFY(series(again, "MSChart1")->labelsPrecision() >= 12); // millions with kopecks, not 1.23457e+06
    w.act(again, "T1=1|T2=2004|Command1");
    QCOMPARE(chart(again, "MSChart1").size(), 8);
    QCOMPARE(series(again, "MSChart1")->labelsAngle(), -90);
    // The charts and the analytics go with the main window.
    w.frame().mainWindow()->parentWidget()->close();
    QTRY_VERIFY(!w.frame().chartsWindow() && !w.frame().analyticsWindow());
}

QTEST_MAIN(AnalyticsWindowTest)
#include "AnalyticsWindowTest.moc"
