#include "MainWindowTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "service/ui/ServiceWindow.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "support/StoreCalls.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

using namespace velmora::test;

using Fill = std::function<void(DataBuilder&)>;
Q_DECLARE_METATYPE(Fill)

namespace {

void writeData(const ProgramFolder& folder, const Fill& fill)
{
    DataBuilder data;
    fill(data);
    folder.write(data.database());
}

} // namespace

void MainWindowTest::everyControlIsInPlace()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder&) {});
    GuiHarness h(folder);
    QVERIFY(h.start());
    // Captions of the frames, labels and buttons, and which are enabled.
    // Аналитика and Сервис are enabled by the frame once it can open their
    // windows; the tests of those windows check them.
    struct Control
    {
        const char* name;
        const char* caption;
        std::optional<bool> enabled = true;
    };
    const Control controls[] = {
        {"Frame1", "Кошельки", true},
        {"Frame2", "Статистика", true},
        {"Frame3", "Состояние", true},
        {"Frame4", "Дополнительно", true},
        {"Frame5", "Банк", true},
        {"Frame6", "В кошельках", true},
        {"Frame7", "В банке", true},
        {"Frame8", "Дата операций", true},
        {"Frame11", "Расходы", true},
        {"Label1", "В текущем месяце", true},
        {"Label2", "В предыдущем месяце", true},
        {"Label3", "Поступления", true},
        {"Label12", "Поступления", true},
        {"Label11", "Расходы", true},
        {"Label13", "Расходы", true},
        {"Label5", "Сумма", true},
        {"Label6", "Сумма", true},
        {"Label7", "Сумма", true},
        {"Label8", "Счет", true},
        {"Label9", "Наименование", true},
        {"Label10", "Примечание", true},
        {"L1", "Имя", true},
        {"L3", "Примечание", true},
        {"L5", "Выбор кошелька", true},
        {"O1", "Положить", true},
        {"O2", "Снять", true},
        {"O3", "Положить", true},
        {"O4", "Забрать", true},
        {"B1", "Аналитика", std::nullopt},
        {"B2", "Сервис", std::nullopt},
        {"B3", "Ввод", true},
        {"B4", "Помощь", true},
        {"B7", "Выход", true},
        {"Command1", "Операция", true},
        {"Command2", "Операция", true},
        {"VC1", "На редакцию", true},
        {"VC2", "Сохранить", true},
        {"VC3", "Удалить", true},
        {"VC4", "Новый", true},
    };
    for (const Control& c : controls) {
        QCOMPARE(h.text(c.name), QString::fromUtf8(c.caption));
        QVERIFY2(!c.enabled || h.mainControl(c.name)->isEnabled() == *c.enabled, c.name);
    }
    for (const char* field :
         {"S1", "S2", "S3", "S4", "T1", "T3", "T4", "T9", "T10", "T11", "T12", "T14", "R1", "R3", "R4"})
        QVERIFY2(qobject_cast<QLineEdit*>(h.mainControl(field)), field);
    for (const char* list : {"R2", "Combo1"})
        QVERIFY2(qobject_cast<QComboBox*>(h.mainControl(list)), list);
    QVERIFY(qobject_cast<QGroupBox*>(h.mainControl("Frame9")));
    const QString about = h.text("Label4");
    QVERIFY(about.contains("Velmora") && about.contains("2.0") && about.contains("https://"));
    // Only one of each pair of option buttons can be chosen.
    h.click(h.frame().mainWindow(), "O1");
    h.click(h.frame().mainWindow(), "O3");
    h.click(h.frame().mainWindow(), "O2");
    QVERIFY(!qobject_cast<QRadioButton*>(h.mainControl("O1"))->isChecked());
    QVERIFY(qobject_cast<QRadioButton*>(h.mainControl("O3"))->isChecked());
}

void MainWindowTest::figures_data()
{
    QTest::addColumn<Fill>("fill");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<QStringList>("shown"); // T12, T10, T11, S1, S2, S3, S4

    QTest::newRow("prepared file") << Fill([](DataBuilder&) {}) << QDate(2026, 3, 15)
                                   << QStringList{"15.03.2026", "0,00 р.", "0,00 р.", "0", "0", "0", "0"};
    QTest::newRow("no purses") << Fill([](DataBuilder& d) { d.balance("1234567,8"); }) << QDate(2026, 3, 15)
                               << QStringList{"15.03.2026", "0,00 р.", "1 234 567,80 р.", "0", "0", "0", "0"};
    QTest::newRow("withdrawals above deposits") << Fill([](DataBuilder& d) {
        d.balance("1000").purse(1, "Наличные", "100").purse(2, "Карта", "50,25");
        d.bank(QDate(2026, 3, 1), "100")
            .bank(QDate(2026, 3, 14), "-250,5")
            .bill(QDate(2026, 3, 2), 1, "12,3");
        d.bank(QDate(2026, 2, 5), "3000")
            .bill(QDate(2026, 2, 7), 1, "40")
            .bill(QDate(2026, 2, 28), 2, "2,05");
    }) << QDate(2026, 3, 31) << QStringList{"31.03.2026", "150,25 р.", "849,75 р.", "-150,5",
                                            "12,3",       "3000",      "42,05"};
    QTest::newRow("January looks back to December") << Fill([](DataBuilder& d) {
        d.bank(QDate(2025, 12, 20), "500").bill(QDate(2025, 12, 21), 1, "20");
        d.bank(QDate(2025, 1, 3), "999").bill(QDate(2024, 12, 3), 1, "77").bank(QDate(2026, 1, 2), "-1");
    }) << QDate(2026, 1, 10) << QStringList{"10.01.2026", "0,00 р.", "0,00 р.", "-1", "0", "500", "20"};
}

void MainWindowTest::figures()
{
    QFETCH(Fill, fill);
    QFETCH(QDate, today);
    QFETCH(QStringList, shown);
    ProgramFolder folder;
    writeData(folder, fill);
    GuiHarness h(folder, today);
    QVERIFY(h.start());
    QStringList actual;
    for (const char* field : {"T12", "T10", "T11", "S1", "S2", "S3", "S4"})
        actual.append(h.text(field));
    QCOMPARE(actual, shown);
}

void MainWindowTest::listsAreInCodeOrderWithNothingChosen()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) {
        d.account(10, "Транспорт").account(2, "Питание").account(9, "Связь");
        d.purse(3, "Карта", "5").purse(1, "Наличные", "7").purseWithoutMoney(12, "Копилка");
    });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QCOMPARE(h.items("R2"), QStringList({"2 - Питание", "9 - Связь", "10 - Транспорт"}));
    QCOMPARE(h.items("Combo1"), QStringList({"1 - Наличные", "3 - Карта", "12 - Копилка"}));
    QCOMPARE(h.text("R2"), QString());
    QCOMPARE(h.text("Combo1"), QString());
    QCOMPARE(h.text("T10"), QString("12,00 р."));
}

void MainWindowTest::refreshShowsWhatChangedMeanwhile()
{
    ProgramFolder folder;
    writeData(folder,
              [](DataBuilder& d) { d.balance("100").account(1, "Питание").purse(1, "Наличные", "30"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QCOMPARE(h.text("T11"), QString("70,00 р."));

    // Another copy of the program books a deposit and a new account.
    store::Store other(folder.path());
    {
        store::Transaction tx(other);
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 3, 2), *store::Amount::parse(u"700"), "x"});
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {*store::Amount::parse(u"800")});
        tx.execute("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)", {5, "Связь"});
        QVERIFY(tx.commit().ok());
    }
    // A purse open for editing is closed by the refresh.
    for (const char* field : {"T1", "T3", "T4", "T14"})
        qobject_cast<QLineEdit*>(h.mainControl(field))->setText("что-то");
    h.mainControl("Combo1")->setEnabled(false);
    h.frame().mainWindow()->refreshListsAndBalances();
    h.frame().mainWindow()->refreshMonthStatistics();
    QCOMPARE(h.text("T11"), QString("770,00 р."));
    QCOMPARE(h.text("S1"), QString("700"));
    QCOMPARE(h.items("R2"), QStringList({"1 - Питание", "5 - Связь"}));
    for (const char* field : {"T1", "T3", "T4", "T14"})
        QVERIFY2(h.text(field).isEmpty(), field);
    QVERIFY(h.mainControl("Combo1")->isEnabled());
    QVERIFY(h.dialogs.shown().isEmpty());
}

// In every window: Enter in a field goes to the next field of its frame, in
// the frame's last field it presses the frame's operation, on a button it
// presses that button; no other button fires.
void MainWindowTest::enterMovesOnInAFrameAndRunsItsOperation()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.account(3, "Питание").purse(1, "Наличные", "100"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    app::Frame& frame = h.frame();
    h.click(frame.mainWindow(), "B2");
    h.click(frame.mainWindow(), "B1");
    frame.showChartsWindow({}, {});
    frame.analyticsWindow()->setReportViewer([](const analytics::ReportDocument&) {});
    QWidget* const main = frame.mainWindow();
    QWidget* const service = frame.serviceWindow();
    QWidget* const analytics = frame.analyticsWindow();
    QWidget* const charts = frame.chartsWindow();
    struct Case
    {
        QWidget* window;
        const char* control;
        const char* next;    // the field that gets the focus
        const char* pressed; // the button that fires
        Qt::Key key = Qt::Key_Return;
    };
    const Case cases[] = {
        {main, "R1", "R2", nullptr},
        {main, "R2", "R3", nullptr},
        {main, "R4", nullptr, "B3"},
        {main, "T9", nullptr, "Command1", Qt::Key_Enter},
        {main, "T12", "T12", nullptr},
        {main, "Combo1", nullptr, "VC1"},
        {main, "T14", nullptr, "Command2"},
        {main, "T1", "T3", nullptr},
        {main, "T3", nullptr, "VC2"},
        {main, "B2", nullptr, "B2"},
        {service, "Combo1A", nullptr, "VC1A"},
        {service, "T1A", nullptr, "VC2A"},
        {service, "Combo1B", "Combo1C", nullptr},
        {service, "Combo1C", nullptr, "C3"},
        {service, "T12", nullptr, "С12"},
        {service, "Combo2", nullptr, "C15"},
        {service, "T7", "T8", nullptr},
        {service, "T8", nullptr, "B7"},
        {service, "C1", nullptr, "C1"},
        {charts, "T1", "T2", nullptr},
        {charts, "T2", nullptr, "Command1"},
        {charts, "T3", nullptr, "Command1"},
        {analytics, "Combo1", "Combo2", nullptr},
        {analytics, "Combo2", nullptr, "B1"},
        {analytics, "R2", nullptr, "B1"},
        {analytics, "B2", nullptr, "B2"},
        {analytics, "B4", nullptr, "B4"},
    };
    for (const Case& c : cases) {
        const QString row = c.window->objectName() + "." + c.control;
        std::vector<std::pair<QString, std::unique_ptr<QSignalSpy>>> spies;
        for (QPushButton* button : c.window->findChildren<QPushButton*>())
            spies.emplace_back(button->objectName(),
                               std::make_unique<QSignalSpy>(button, &QPushButton::clicked));
        QWidget* control = h.control(c.window, c.control);
        control->setFocus();
        QTest::keyClick(control, c.key, c.key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
        if (c.next)
            QVERIFY2(c.window->focusWidget() == h.control(c.window, c.next), qPrintable(row));
        for (const auto& [name, spy] : spies)
            QVERIFY2(spy->count() == (name == utf8(c.pressed ? c.pressed : "")),
                     qPrintable(row + " " + name));
    }
    QTRY_VERIFY(!frame.analyticsWindow());
    QVERIFY(rows(frame.store(), "Bank").empty() && rows(frame.store(), "Bills").empty());
}

QTEST_MAIN(MainWindowTest)
