#include "AnalyticsWindowTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "analytics/AnalyticsTexts.h"
#include "analytics/ReportPainter.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/MainWindow.h"
#include "store/Store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace velmora::test;

namespace {

// 2005 with months of income and expenses, November's paid from a purse
// deleted since; the harness's today is 15.03.2026.
void household(DataBuilder& data)
{
    data.account(0, "Разное").account(3, "Питание").account(1200, "Подарки к праздникам и юбилеям");
    data.purse(1, "Основной", "100");
    data.bank(QDate(2005, 3, 1), "5000", "Зарплата")
        .bank(QDate(2005, 3, 15), "-6000,5", "Снятие на ремонт")
        .bank(QDate(2005, 11, 5), "300", "Проценты")
        .bank(QDate(2005, 11, 20), "1200", "Премия")
        .bank(QDate(2026, 3, 2), "100", "Сегодняшний месяц");
    data.bill(QDate(2005, 3, 10), 3, "120,5")
        .bill(QDate(2005, 5, 20), 3, "79,5")
        .bill(QDate(2005, 11, 15), 1200, "250", 2)
        .bill(QDate(2026, 3, 5), 0, "7");
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
        window = h->frame().analyticsWindow();
    }

    QWidget* control(const char* name) const { return h->control(window, name); }
    QString field(const char* name) const { return qobject_cast<QLineEdit*>(control(name))->text(); }
    QComboBox* list(const char* name) const { return qobject_cast<QComboBox*>(control(name)); }
    void choose(const char* name, const QString& entry)
    {
        list(name)->setCurrentIndex(list(name)->findText(entry));
    }
    void click(const char* name) { h->click(window, name); }
    QStringList figures() const { return {field("T3"), field("T4"), field("T5"), field("T6")}; }
    // The rows of a grid, cells joined by "|".
    QStringList rows(const char* grid) const
    {
        const QAbstractItemModel* model = qobject_cast<QTableView*>(control(grid))->model();
        QStringList lines;
        for (int r = 0; r < model->rowCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < model->columnCount(); ++c)
                cells.append(model->index(r, c).data().toString());
            lines.append(cells.join(QLatin1Char('|')));
        }
        return lines;
    }
    QString caption() const { return qobject_cast<QLabel*>(control("DataGrid2Caption"))->text(); }
    QStringList boxes() const
    {
        QStringList shown;
        for (const ShownBox& box : h->dialogs.shown())
            shown.append(box.title + "|" + box.text);
        return shown;
    }

    ProgramFolder folder;
    std::unique_ptr<GuiHarness> h;
    analytics::AnalyticsWindow* window = nullptr;
};

QString pdfText(const QString& path)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), path, QStringLiteral("-")});
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

void AnalyticsWindowTest::opensFromTheMainWindowForTodaysMonth()
{
    Program p;
    QVERIFY(p.window);
    QCOMPARE(p.window->windowTitle(), utf8(analytics::texts::windowTitle));
    QCOMPARE(p.list("Combo1")->count(), 12);
    QCOMPARE(p.list("Combo1")->itemText(2), utf8("3 - Март"));
    QCOMPARE(p.list("Combo2")->count(), 2);
    QCOMPARE(p.list("R2")->itemText(2), utf8("1200 - Подарки к праздникам и юбилеям"));
    for (const char* name : {"Combo1", "Combo2", "R2"})
        QVERIFY2(p.list(name)->currentText().isEmpty(), name);
    // Empty lists: March 2026.
    QCOMPARE(p.figures(), (QStringList{"100", "100", "7", "7"}));
    QCOMPARE(p.rows("DataGrid1"),
             (QStringList{utf8("0 - Разное|||7||||||||||0 - Разное|7"),
                          utf8(" -- ИТОГО -- |0|0|7|0|0|0|0|0|0|0|0|0| -- ИТОГО -- |7")}));
    QCOMPARE(p.caption(), utf8("Приход"));
    QCOMPARE(p.rows("DataGrid2"), QStringList{utf8("02.03.2026|100|Сегодняшний месяц|5")});
    QVERIFY(p.control("B2")->isEnabled());
    QVERIFY(!p.control("B3")->isEnabled());
    QVERIFY(p.boxes().isEmpty());
    // A second Аналитика brings the same window forward.
    p.h->click(p.h->frame().mainWindow(), "B1");
    QCOMPARE(p.h->frame().analyticsWindow(), p.window);
    QCOMPARE(p.h->frame().findChildren<analytics::AnalyticsWindow*>().size(), 1);
}

void AnalyticsWindowTest::recalculateFollowsMonthYearAndAccount()
{
    Program p;
    p.choose("Combo2", "2005");
    p.choose("Combo1", utf8("3 - Март"));
    // Changing the lists alone rebuilds nothing.
    QCOMPARE(p.figures(), (QStringList{"100", "100", "7", "7"}));
    p.click("B1");
    QCOMPARE(p.figures(), (QStringList{"-1000,5", "499,5", "120,5", "450"}));
    QCOMPARE(p.rows("DataGrid1"),
             (QStringList{utf8("3 - Питание|||120,5||79,5||||||||3 - Питание|200"),
                          utf8("1200 - Подарки к пра|||||||||||250||1200 - Подарки к пра|250"),
                          utf8(" -- ИТОГО -- |0|0|120,5|0|79,5|0|0|0|0|0|250|0| -- ИТОГО -- |450")}));
    QCOMPARE(p.rows("DataGrid2"), (QStringList{utf8("15.03.2005|-6000,5|Снятие на ремонт|2"),
                                               utf8("01.03.2005|5000|Зарплата|1")}));
    p.click("O2");
    QVERIFY(!p.control("B2")->isEnabled());
    QVERIFY(p.control("B3")->isEnabled());
    p.choose("R2", utf8("3 - Питание"));
    p.click("B1");
    QCOMPARE(p.caption(), utf8("Расход"));
    QCOMPARE(p.rows("DataGrid2"), QStringList{utf8("10.03.2005|120,5|покупка|Основной|1|")});
    p.choose("Combo1", utf8("11 - Ноябрь"));
    p.choose("R2", utf8("1200 - Подарки к праздникам и юбилеям"));
    p.click("B1");
    QCOMPARE(p.figures(), (QStringList{"1500", "499,5", "250", "450"}));
    QCOMPARE(p.rows("DataGrid2"), QStringList{utf8("15.11.2005|250|покупка|(кошелек удален)|3|")});
    p.click("O1");
    QVERIFY(p.control("B2")->isEnabled());
    QVERIFY(!p.control("B3")->isEnabled());
    QVERIFY(p.boxes().isEmpty());
}

void AnalyticsWindowTest::expenseDetailsWithoutAccountSayWhatIsMissing()
{
    Program p;
    const QStringList income = p.rows("DataGrid2");
    p.choose("Combo2", "2005");
    p.click("O2");
    p.click("B1");
    const QString missing = utf8("Ошибка|") + utf8(analytics::texts::chooseAccount);
    QCOMPARE(p.boxes(), QStringList{missing});
    // The table and the figures follow; the detail list keeps what it showed.
    QCOMPARE(p.field("T6"), QStringLiteral("450"));
    QCOMPARE(p.caption(), utf8("Приход"));
    QCOMPARE(p.rows("DataGrid2"), income);
    // "Расход" with no account: the message only, no rebuild, no report.
    int reports = 0;
    p.window->setReportViewer([&reports](const analytics::ReportDocument&) { ++reports; });
    p.list("Combo2")->setEditText(QString());
    p.click("B3");
    QCOMPARE(p.boxes(), (QStringList{missing, missing}));
    QCOMPARE(reports, 0);
    QCOMPARE(p.field("T6"), QStringLiteral("450"));
    QCOMPARE(p.h->dialogs.shown().last().icon, ui::DialogIcon::Information);
}

void AnalyticsWindowTest::typedMonthsAndYearsThatAreNoneShowEmptyFigures()
{
    Program p;
    const QString totalsOnly = utf8(" -- ИТОГО -- |0|0|0|0|0|0|0|0|0|0|0|0| -- ИТОГО -- |0");
    struct Case
    {
        const char* month;
        const char* year;
        QStringList figures;
        QStringList yearTable;
    };
    const Case cases[] = {
        {"3", "20x5", {"0", "0", "0", "0"}, {totalsOnly}}, {"13", "2005", {"0", "499,5", "0", "450"}, {}},
        {"март", "2005", {"0", "499,5", "0", "450"}, {}},  {"3", "1999", {"0", "0", "0", "0"}, {totalsOnly}},
        {"3", "", {"100", "100", "7", "7"}, {}},
    };
    for (const Case& c : cases) {
        p.list("Combo1")->setEditText(utf8(c.month));
        p.list("Combo2")->setEditText(utf8(c.year));
        p.click("B1");
        QCOMPARE(p.figures(), c.figures);
        if (!c.yearTable.isEmpty())
            QCOMPARE(p.rows("DataGrid1"), c.yearTable);
        if (c.figures.first() == QLatin1String("0"))
            QCOMPARE(p.rows("DataGrid2"), QStringList());
    }
    QVERIFY(p.boxes().isEmpty());
}

void AnalyticsWindowTest::reportsPrintTheDetailList()
{
    Program p;
    QTemporaryDir dir;
    QStringList texts;
    p.window->setReportViewer([&](const analytics::ReportDocument& report) {
        const QString path = dir.filePath(QStringLiteral("report%1.pdf").arg(texts.size()));
        QVERIFY(analytics::ReportPainter::writePdf(report, path));
        texts.append(pdfText(path).simplified());
    });
    p.choose("Combo2", "2005");
    struct Case
    {
        const char* month;
        const char* account; // expense report when given
        const char* title;
        QStringList absent;
    };
    const Case cases[] = {
        {"3 - Март", nullptr, "Статистика поступлений за 03.2005", {"Проценты", "Премия", "Сегодняшний"}},
        {"11 - Ноябрь", nullptr, "Статистика поступлений за 11.2005", {"Зарплата", "Снятие", "Сегодняшний"}},
        {"11 - Ноябрь",
         "1200 - Подарки к праздникам и юбилеям",
         "Статистика расходов за 11.2005",
         {"Проценты", "120,5"}},
    };
    for (const Case& c : cases) {
        p.choose("Combo1", utf8(c.month));
        p.click(c.account ? "O2" : "O1");
        if (c.account)
            p.choose("R2", utf8(c.account));
        p.click(c.account ? "B3" : "B2");
        QCOMPARE(texts.size(), static_cast<qsizetype>(&c - cases + 1));
        const QString& text = texts.last();
        QVERIFY2(text.contains(utf8(c.title)), qPrintable(text));
        // The expense report adds up to the month's expenses, purses deleted since included.
        if (c.account)
            QVERIFY2(text.contains(utf8("Счет: ") + utf8(c.account)) &&
                         text.contains(utf8("Итого: ") + p.field("T5")) &&
                         text.contains(utf8("(кошелек удален)")),
                     qPrintable(text));
        // Every operation of the detail list, cell by cell, in the order of the list.
        for (const QString& row : p.rows("DataGrid2")) {
            const QString line = row.split(QLatin1Char('|'), Qt::SkipEmptyParts).join(QLatin1Char(' '));
            QVERIFY2(text.contains(line), qPrintable(line + "\n" + text));
        }
        for (const QString& other : c.absent)
            QVERIFY2(!text.contains(other), qPrintable(other));
    }
    QVERIFY(p.boxes().isEmpty());
}

// The window on its own, without the frame, so that no charts window answers.
void AnalyticsWindowTest::chartsGetMonthAndYearOnlyWhenTicked()
{
    ProgramFolder folder;
    DataBuilder data;
    household(data);
    folder.write(data.database());
    store::Store store(folder.path());
    ScriptedDialogs dialogs;
    analytics::AnalyticsWindow window(store, dialogs, [] { return QDate(2026, 3, 15); });
    window.load();
    QSignalSpy handed(&window, &analytics::AnalyticsWindow::chartsRequested);
    auto* tick = window.findChild<QCheckBox*>("C1");
    QVERIFY(!tick->isEnabled()); // laid out, but unusable while there is no charts window
    tick->setChecked(true);
    window.findChild<QPushButton*>("B1")->click();
    QCOMPARE(handed.count(), 0);
    window.setChartsAvailable(true);
    const auto recalculate = [&](const QString& month, const QString& year) {
        window.findChild<QComboBox*>("Combo1")->setEditText(month);
        window.findChild<QComboBox*>("Combo2")->setEditText(year);
        window.findChild<QPushButton*>("B1")->click();
    };
    recalculate({}, {});
    QCOMPARE(handed.count(), 1);
    QCOMPARE(handed.last(), (QVariantList{utf8("3 - Март"), QStringLiteral("2026")}));
    recalculate(utf8("11 - Ноябрь"), QStringLiteral("2005"));
    QCOMPARE(handed.last(), (QVariantList{utf8("11 - Ноябрь"), QStringLiteral("2005")}));
    // A month the data file has no name for: the charts keep their month.
    recalculate(QStringLiteral("13"), QStringLiteral("2005"));
    QCOMPARE(handed.last(), (QVariantList{QString(), QStringLiteral("2005")}));
    tick->setChecked(false);
    recalculate({}, {});
    QCOMPARE(handed.count(), 3);
    QVERIFY(dialogs.shown().isEmpty());
}

QTEST_MAIN(AnalyticsWindowTest)
