// The charts window on its own: what its two charts show after each drawing,
// read back from the chart views, with scripted boxes.
#include "charts/ui/ChartsWindow.h"
#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "ScriptedDialogs.h"
#include "charts/ChartsTexts.h"
#include "store/Store.h"
#include "ui/UiTexts.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QGroupBox>
#include <QLabel>
#include <QLegendMarker>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace velmora::test;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

struct DrawnChart
{
    bool shown = false;
    bool noExpensesShown = false;
    QStringList categories;
    QStringList legend;
    QList<double> values;
    QList<QColor> colours;
};

DrawnChart drawn(QWidget* window, const char* chartName, const char* labelName)
{
    DrawnChart result;
    auto* view = window->findChild<QChartView*>(chartName);
    result.shown = view->isVisible();
    result.noExpensesShown = window->findChild<QLabel*>(labelName)->isVisible();
    const QList<QAbstractSeries*> series = view->chart()->series();
    if (series.isEmpty())
        return result;
    for (QBarSet* set : static_cast<QBarSeries*>(series.front())->barSets()) {
        result.values.append(set->at(0));
        result.colours.append(set->color());
    }
    for (QLegendMarker* marker : view->chart()->legend()->markers())
        result.legend.append(marker->label());
    if (auto* axis = qobject_cast<QBarCategoryAxis*>(view->chart()->axes(Qt::Horizontal).value(0)))
        result.categories = axis->categories();
    return result;
}

// Питание, Транспорт and Аптека spend in March 2005 (Аптека exactly 1500,
// Питание exactly 1000); Отпуск spends only in April.
void writeHousehold(const ProgramFolder& folder)
{
    DataBuilder data;
    data.account(1, "Питание")
        .account(2, "Транспорт")
        .account(4, "Отпуск")
        .account(10, "Аптека")
        .bill(QDate(2005, 3, 1), 1, "600")
        .bill(QDate(2005, 3, 31), 1, "400")
        .bill(QDate(2005, 3, 5), 10, "1500")
        .bill(QDate(2005, 3, 7), 2, "12,34")
        .bill(QDate(2005, 4, 2), 4, "50000");
    folder.write(data.database());
}

} // namespace

class ChartsWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void captionsAndNames();
    void drawsMonthAndYearOfTheHandedOverPeriod();
    void exclusionRedrawsWithZeroBars();
    void thresholdThatIsNoNumberIsReportedOncePerDrawing();
    void hiddenChartReturnsWhenItsPeriodHasExpenses();
    void laterHandOverWaitsForExclude();
    void closeButtonClosesTheWindow();

private:
    QLineEdit* field(const char* name) { return m_window->findChild<QLineEdit*>(name); }
    void exclude() { m_window->findChild<QPushButton*>("Command1")->click(); }
    DrawnChart month() { return drawn(m_window.get(), "MSChart1", "Label4"); }
    DrawnChart year() { return drawn(m_window.get(), "MSChart2", "Label3"); }

    std::unique_ptr<ProgramFolder> m_folder;
    std::unique_ptr<store::Store> m_store;
    ScriptedDialogs m_dialogs;
    std::unique_ptr<charts::ChartsWindow> m_window;
};

void ChartsWindowTest::init()
{
    m_folder = std::make_unique<ProgramFolder>();
    writeHousehold(*m_folder);
    m_store = std::make_unique<store::Store>(m_folder->path());
    m_dialogs = ScriptedDialogs();
    m_window = std::make_unique<charts::ChartsWindow>(*m_store, m_dialogs, [] { return QDate(2005, 5, 10); });
    m_window->show();
}

void ChartsWindowTest::cleanup()
{
    m_window.reset();
    m_store.reset();
    m_folder.reset();
}

void ChartsWindowTest::captionsAndNames()
{
    QCOMPARE(m_window->windowTitle(), text(charts::texts::windowTitle));
    const struct
    {
        const char* name;
        const char* caption;
    } frames[] = {{"Frame1", "Диаграмма расходов по счетам ЗА МЕСЯЦ"},
                  {"Frame2", "Параметры"},
                  {"Frame3", "Диаграмма расходов по счетам ЗА ГОД"},
                  {"Frame4", "Исключить"}};
    for (const auto& frame : frames)
        QCOMPARE(m_window->findChild<QGroupBox*>(frame.name)->title(), text(frame.caption));
    const struct
    {
        const char* name;
        const char* caption;
    } labels[] = {{"Label1", "Месяц"},
                  {"Label2", "Год"},
                  {"Label5", "расходы >"},
                  {"Label3", "РАСХОДОВ НЕ БЫЛО!!!"},
                  {"Label4", "РАСХОДОВ НЕ БЫЛО!!!"}};
    for (const auto& label : labels)
        QCOMPARE(m_window->findChild<QLabel*>(label.name)->text(), text(label.caption));
    QCOMPARE(m_window->findChild<QPushButton*>("Command1")->text(), text("Исключить"));
    QCOMPARE(m_window->findChild<QPushButton*>("B1")->text(), text("Закрыть"));
    for (const char* name : {"T1", "T2", "T3"})
        QVERIFY2(field(name)->text().isEmpty(), name);
}

void ChartsWindowTest::drawsMonthAndYearOfTheHandedOverPeriod()
{
    m_window->drawPeriod(text("3 - Март"), "2005");
    QCOMPARE(field("T1")->text(), text("3 - Март"));
    QCOMPARE(field("T2")->text(), QString("2005"));
    const DrawnChart m = month();
    QVERIFY(m.shown);
    QVERIFY(!m.noExpensesShown);
    QCOMPARE(m.categories, QStringList{"03.2005"});
    QCOMPARE(m.legend, (QStringList{text("Питание"), text("Транспорт"), text("Аптека")}));
    QCOMPARE(m.values, (QList<double>{1000, 12.34, 1500}));

    const DrawnChart y = year();
    QVERIFY(y.shown);
    QCOMPARE(y.categories, QStringList{"2005"});
    QCOMPARE(y.legend, (QStringList{text("Питание"), text("Транспорт"), text("Отпуск"), text("Аптека")}));
    QCOMPARE(y.values, (QList<double>{1000, 12.34, 50000, 1500}));
    // An account has one colour in both charts; the accounts' colours differ.
    QCOMPARE(m.colours[0], y.colours[0]);
    QCOMPARE(m.colours[1], y.colours[1]);
    QCOMPARE(m.colours[2], y.colours[3]);
    for (int i = 0; i < y.colours.size(); ++i)
        for (int j = i + 1; j < y.colours.size(); ++j)
            QVERIFY(y.colours[i] != y.colours[j]);
    QVERIFY(m_dialogs.shown().isEmpty());
}

void ChartsWindowTest::exclusionRedrawsWithZeroBars()
{
    m_window->drawPeriod("3", "2005");
    field("T3")->setText("1000");
    // Typing redraws nothing; "Исключить" does.
    QCOMPARE(month().values, (QList<double>{1000, 12.34, 1500}));
    exclude();
    const DrawnChart m = month();
    QCOMPARE(m.values, (QList<double>{1000, 12.34, 0}));
    QCOMPARE(m.legend, (QStringList{text("Питание"), text("Транспорт"), text("Аптека")}));
    QCOMPARE(year().values, (QList<double>{1000, 12.34, 0, 0}));

    // Enter in a field redraws as well.
    field("T3")->setText("12,34");
    QTest::keyClick(field("T3"), Qt::Key_Return);
    QCOMPARE(month().values, (QList<double>{0, 12.34, 0}));
    field("T3")->clear();
    exclude();
    QCOMPARE(month().values, (QList<double>{1000, 12.34, 1500}));
    QVERIFY(m_dialogs.shown().isEmpty());
}

void ChartsWindowTest::thresholdThatIsNoNumberIsReportedOncePerDrawing()
{
    m_window->drawPeriod("3", "2005");
    for (const char* typed : {"abc", "1 000"}) {
        field("T3")->setText(typed);
        const int before = m_dialogs.shown().size();
        exclude();
        QCOMPARE(m_dialogs.shown().size(), before + 1);
        const ShownBox& box = m_dialogs.shown().last();
        QCOMPARE(box.text, text(charts::texts::mustBeNumber));
        QCOMPARE(box.title, text(ui::texts::errorTitle));
        QCOMPARE(box.icon, ui::DialogIcon::Information);
        // The drawing goes on, leaving nothing out.
        QCOMPARE(month().values, (QList<double>{1000, 12.34, 1500}));
        QCOMPARE(year().values, (QList<double>{1000, 12.34, 50000, 1500}));
    }
}

void ChartsWindowTest::hiddenChartReturnsWhenItsPeriodHasExpenses()
{
    m_window->drawPeriod(text("5 - Май"), "2005");
    QVERIFY(!month().shown);
    QVERIFY(month().noExpensesShown);
    QVERIFY(year().shown);
    QVERIFY(!year().noExpensesShown);

    field("T2")->setText("abc");
    exclude();
    QVERIFY(!month().shown && month().noExpensesShown);
    QVERIFY(!year().shown && year().noExpensesShown);

    field("T1")->setText("4");
    field("T2")->setText("2005");
    exclude();
    QVERIFY(month().shown && !month().noExpensesShown);
    QCOMPARE(month().categories, QStringList{"04.2005"});
    QCOMPARE(month().legend, QStringList{text("Отпуск")});
    QVERIFY(year().shown && !year().noExpensesShown);
}

void ChartsWindowTest::laterHandOverWaitsForExclude()
{
    m_window->drawPeriod("", "");
    // Empty fields: today's month, May 2005, had no expenses.
    QVERIFY(!month().shown);
    QCOMPARE(year().categories, QStringList{"2005"});
    m_window->setPeriod(text("3 - Март"), "2005");
    QVERIFY(!month().shown);
    exclude();
    QCOMPARE(month().categories, QStringList{"03.2005"});
}

void ChartsWindowTest::closeButtonClosesTheWindow()
{
    QSignalSpy closed(m_window.get(), &charts::ChartsWindow::closed);
    m_window->findChild<QPushButton*>("B1")->click();
    QCOMPARE(closed.count(), 1);
    QVERIFY(!m_window->isVisible());
}

QTEST_MAIN(ChartsWindowTest)
#include "ChartsWindowTest.moc"
