#include "ChartsFromAnalyticsTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsTexts.h"
#include "charts/ui/ChartsWindow.h"
#include "ui/UiTexts.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

#include <memory>

using namespace velmora::test;

namespace {

// March and November 2005, and today's month (the harness's today is 15.03.2026).
void household(DataBuilder& data)
{
    data.account(1, "Питание").account(2, "Транспорт").account(10, "Аптека");
    data.purse(1, "Основной", "100");
    data.bank(QDate(2005, 3, 1), "5000").bank(QDate(2026, 3, 1), "100");
    data.bill(QDate(2005, 3, 10), 1, "120,5")
        .bill(QDate(2005, 3, 12), 10, "1500")
        .bill(QDate(2005, 11, 15), 2, "250")
        .bill(QDate(2026, 3, 5), 2, "7");
}

// What a chart shows: its category, then "legend=value" per bar; empty when hidden.
QStringList shown(QWidget* charts, const char* chartName)
{
    auto* view = charts->findChild<QChartView*>(chartName);
    if (!view->isVisible())
        return {};
    QStringList lines;
    lines.append(qobject_cast<QBarCategoryAxis*>(view->chart()->axes(Qt::Horizontal).value(0))->categories());
    const auto* series = static_cast<QBarSeries*>(view->chart()->series().value(0));
    for (const QBarSet* set : series->barSets())
        lines.append(set->label() + "=" + QString::number(set->at(0)));
    return lines;
}

QString captionOf(QWidget* control)
{
    if (auto* frame = qobject_cast<QGroupBox*>(control))
        return frame->title();
    if (auto* label = qobject_cast<QLabel*>(control))
        return label->text();
    return qobject_cast<QAbstractButton*>(control)->text();
}

QList<QColor> colours(QWidget* charts, const char* chartName)
{
    QList<QColor> result;
    const auto* view = charts->findChild<QChartView*>(chartName);
    for (QBarSet* set : static_cast<QBarSeries*>(view->chart()->series().value(0))->barSets())
        result.append(set->color());
    return result;
}

// The program with Form3 opened by the main window's Аналитика.
struct Program
{
    Program()
    {
        DataBuilder data;
        household(data);
        folder.write(data.database());
        h = std::make_unique<GuiHarness>(folder);
        if (h->start() && h->frame().mainWindow())
            h->click(h->frame().mainWindow(), "B1");
        analytics = h->frame().analyticsWindow();
    }

    // "Пересчитать" for a month and year typed into the lists, with or without "Диаграмма".
    void recalculate(const QString& month, const QString& year, bool charts = true)
    {
        qobject_cast<QComboBox*>(h->control(analytics, "Combo1"))->setEditText(month);
        qobject_cast<QComboBox*>(h->control(analytics, "Combo2"))->setEditText(year);
        qobject_cast<QCheckBox*>(h->control(analytics, "C1"))->setChecked(charts);
        h->click(analytics, "B1");
    }
    QWidget* charts() const { return h->frame().chartsWindow(); }
    QLineEdit* edit(const char* name) const { return qobject_cast<QLineEdit*>(h->control(charts(), name)); }
    QString field(const char* name) const { return edit(name)->text(); }
    // Types into a field of the charts window and presses "Исключить".
    void exclude(const char* name, const QString& text)
    {
        edit(name)->setText(text);
        h->click(charts(), "Command1");
    }

    ProgramFolder folder;
    std::unique_ptr<GuiHarness> h;
    analytics::AnalyticsWindow* analytics = nullptr;
};

} // namespace

void ChartsFromAnalyticsTest::tickedRecalculateOpensChartsForTheChosenPeriod()
{
    Program p;
    QVERIFY(p.analytics);
    QVERIFY(p.h->control(p.analytics, "C1")->isEnabled());
    p.recalculate(utf8("3 - Март"), "2005", false);
    QVERIFY(!p.charts());

    p.recalculate(utf8("3 - Март"), "2005");
    QVERIFY(p.charts());
    QCOMPARE(p.charts()->windowTitle(), utf8(charts::texts::windowTitle));
    namespace texts = charts::texts;
    const char* captions[][2] = {{"Frame1", texts::monthChartFrame}, {"Frame2", texts::parametersFrame},
                                 {"Frame3", texts::yearChartFrame},  {"Frame4", texts::excludeFrame},
                                 {"Label1", texts::monthLabel},      {"Label2", texts::yearLabel},
                                 {"Label5", texts::thresholdLabel},  {"Label3", texts::noExpenses},
                                 {"Label4", texts::noExpenses},      {"Command1", texts::excludeButton},
                                 {"B1", texts::closeButton}};
    for (const auto& [name, caption] : captions)
        QCOMPARE(captionOf(p.h->control(p.charts(), name)), utf8(caption));
    QCOMPARE(p.field("T1"), utf8("3 - Март"));
    QCOMPARE(p.field("T2"), QString("2005"));
    // The first drawing already shows the period handed over.
    QCOMPARE(shown(p.charts(), "MSChart1"),
             (QStringList{"03.2005", utf8("Питание=120.5"), utf8("Аптека=1500")}));
    QCOMPARE(shown(p.charts(), "MSChart2"),
             (QStringList{"2005", utf8("Питание=120.5"), utf8("Транспорт=250"), utf8("Аптека=1500")}));
    // An account has one colour in both charts; no two accounts share one.
    const QList<QColor> month = colours(p.charts(), "MSChart1");
    const QList<QColor> year = colours(p.charts(), "MSChart2");
    QCOMPARE(month, (QList<QColor>{year[0], year[2]}));
    QVERIFY(year[0] != year[1] && year[1] != year[2] && year[0] != year[2]);
    QCOMPARE(p.h->frame().mdiArea()->activeSubWindow()->widget(), p.charts());
    QVERIFY(p.h->dialogs.shown().isEmpty());

    // Empty lists hand over today's month and year.
    p.charts()->parentWidget()->close();
    QTRY_VERIFY(!p.charts());
    p.recalculate({}, {});
    QVERIFY(p.charts());
    QCOMPARE(p.field("T1"), utf8("3 - Март"));
    QCOMPARE(p.field("T2"), QString("2026"));
    QCOMPARE(shown(p.charts(), "MSChart1"), (QStringList{"03.2026", utf8("Транспорт=7")}));
}

void ChartsFromAnalyticsTest::openChartsTakeTheNextPeriodAndRedrawOnExclude()
{
    Program p;
    p.recalculate(utf8("3 - Март"), "2005");
    QWidget* first = p.charts();
    p.recalculate(utf8("11 - Ноябрь"), "2005");
    QCOMPARE(p.charts(), first);
    QCOMPARE(p.h->frame().findChildren<charts::ChartsWindow*>().size(), 1);
    QCOMPARE(p.field("T1"), utf8("11 - Ноябрь"));
    // The charts keep the period they show until "Исключить".
    QCOMPARE(shown(p.charts(), "MSChart1").value(0), QString("03.2005"));
    p.h->click(p.charts(), "Command1");
    QCOMPARE(shown(p.charts(), "MSChart1"), (QStringList{"11.2005", utf8("Транспорт=250")}));

    // A month the data file has no name for leaves the month field alone.
    p.recalculate("13", "2005");
    QCOMPARE(p.field("T1"), utf8("11 - Ноябрь"));

    // Above the threshold: a zero bar that keeps its place and name; 250 is not above 250.
    p.exclude("T3", "250");
    QCOMPARE(shown(p.charts(), "MSChart2"),
             (QStringList{"2005", utf8("Питание=120.5"), utf8("Транспорт=250"), utf8("Аптека=0")}));
    // Enter in a field redraws too; a decimal comma and a negative limit are numbers.
    p.edit("T3")->setText("120,49");
    QTest::keyClick(p.edit("T3"), Qt::Key_Return);
    QCOMPARE(shown(p.charts(), "MSChart2").mid(1),
             (QStringList{utf8("Питание=0"), utf8("Транспорт=0"), utf8("Аптека=0")}));
    p.exclude("T3", "-1");
    QCOMPARE(shown(p.charts(), "MSChart1"), (QStringList{"11.2005", utf8("Транспорт=0")}));
    QVERIFY(p.h->dialogs.shown().isEmpty());
    // A word is refused once per drawing, and the drawing leaves nothing out.
    p.exclude("T3", utf8("тысяча"));
    QCOMPARE(p.h->dialogs.shown().size(), 1);
    QCOMPARE(p.h->dialogs.shown().last().text, utf8(charts::texts::mustBeNumber));
    QCOMPARE(p.h->dialogs.shown().last().title, utf8(ui::texts::errorTitle));
    QCOMPARE(shown(p.charts(), "MSChart2").last(), utf8("Аптека=1500"));
}

void ChartsFromAnalyticsTest::hiddenChartReturnsWhenItsPeriodHasExpenses()
{
    Program p;
    p.recalculate(utf8("5 - Май"), "2005");
    // May 2005 had no expenses: the month chart is hidden, the year's drawn.
    QVERIFY(shown(p.charts(), "MSChart1").isEmpty());
    QVERIFY(p.h->control(p.charts(), "Label4")->isVisible());
    QCOMPARE(shown(p.charts(), "MSChart2").value(0), QString("2005"));
    QVERIFY(!p.h->control(p.charts(), "Label3")->isVisible());
    // Letters, 13 and a year of letters match nothing.
    for (const char* month : {"abc", "13"}) {
        p.exclude("T1", month);
        QVERIFY(shown(p.charts(), "MSChart1").isEmpty());
    }
    p.exclude("T2", "abc");
    QVERIFY(shown(p.charts(), "MSChart2").isEmpty());
    QVERIFY(p.h->control(p.charts(), "Label3")->isVisible());
    // A later drawing with expenses shows both charts again.
    p.edit("T1")->setText("3");
    p.exclude("T2", "2005");
    QCOMPARE(shown(p.charts(), "MSChart1").value(0), QString("03.2005"));
    QCOMPARE(shown(p.charts(), "MSChart2").value(0), QString("2005"));
    QVERIFY(!p.h->control(p.charts(), "Label4")->isVisible());
    QVERIFY(!p.h->control(p.charts(), "Label3")->isVisible());
}

void ChartsFromAnalyticsTest::chartsCloseWithTheirButtonAndWithTheMainWindow()
{
    Program p;
    p.recalculate("5", "2005");
    // The splash closing meanwhile would change the count.
    QTRY_VERIFY(!p.h->frame().splashWindow());
    const int windows = p.h->frame().mdiArea()->subWindowList().size();
    p.h->click(p.charts(), "B1");
    QTRY_VERIFY(!p.charts());
    QCOMPARE(p.h->frame().mdiArea()->subWindowList().size(), windows - 1);

    p.recalculate("3", "2005");
    QVERIFY(p.charts());
    p.h->frame().mainWindow()->parentWidget()->close();
    QTRY_VERIFY(!p.charts());
    QTRY_VERIFY(!p.h->frame().analyticsWindow());
}

QTEST_MAIN(ChartsFromAnalyticsTest)
