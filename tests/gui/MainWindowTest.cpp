// The main window: a household's week through its buttons (the golden
// scenario), what it shows on a data file, a refresh, Enter in every window,
// and what its buttons do with wrong or missing input: the program's own
// messages in their order, nothing written, the program going on.
#include "app/MainWindow.h"
#include "WindowDriver.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "support/StoreCalls.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>
#include <vector>

using namespace velmora::test;

namespace {

using Fields = QList<std::pair<const char*, QString>>;

const QString kNumber = "Ошибка: Необходимо вводить число!";
const QString kDate = "Ошибка: Необходимо задать правильную дату операции!";
const QString kExpenseFields = "Ошибка: Необходимо указать номер счета, сумму расхода и выбрать кошелек!";
const QString kCash = "1 - Наличные";

// "" when every named control shows its text, else what differs.
QString differences(const Form& form, const Fields& expected)
{
    QStringList found;
    for (const auto& [name, shown] : expected)
        if (form.text(name) != shown)
            found.append(QStringLiteral("%1 shows \"%2\", not \"%3\"").arg(name, form.text(name), shown));
    return found.join(QStringLiteral("; "));
}

void openPurse(const Form& main, const QString& entry = kCash)
{
    main.choose("Combo1", entry);
    main.click("VC1");
}

// An expense with every field but those the row leaves out.
void expense(WindowDriver& w, bool purse, bool account, const QString& amount)
{
    const Form main = w.main();
    if (purse)
        openPurse(main);
    else
        main.choose("Combo1", kCash); // chosen, but not opened
    if (account)
        main.choose("R2", "3 - Питание");
    main.enter("R1", amount);
    main.enter("R3", "Хлеб");
    main.click("B3");
}

} // namespace

using Act = std::function<void(WindowDriver&)>;
Q_DECLARE_METATYPE(Act)

class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void aWeekOfTheHousehold();
    void whatTheWindowShowsOfADataFile();
    void refreshShowsWhatChangedMeanwhile();
    void enterMovesOnInAFrameAndRunsItsOperation();
    void wrongInputWritesNothing_data();
    void wrongInputWritesNothing();
    void bankWithNeitherOptionWithdrawsAndClosesThePurse();
    void keypadDecimalKey();
};

// Every step through the real buttons, then the window's fields and the data
// file's rows compared with what they must be.
void MainWindowTest::aWeekOfTheHousehold()
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт");
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form main = w.main();
    const QString cash = "1 - Наличные";
    struct Step
    {
        const char* what;
        std::function<void()> act;
        QStringList boxes;
        Fields fields;
        const char* table;
        QStringList rows;
    };
    const std::vector<Step> steps = {
        {"salary into the bank",
         [&] {
             main.enter("T9", "45000");
             main.click("O1");
             w.dialogs.answerText("Зарплата за март");
             main.click("Command1");
         },
         {"Ошибка: Сумма в размере 45000 добавлена"},
         {{"T9", ""}, {"T11", "45 000,00 р."}, {"T10", "0,00 р."}, {"S1", "45000"}},
         "Bank",
         {"1 | 2026-03-15 | 45000 | Зарплата за март"}},
        {"a new purse",
         [&] {
             w.dialogs.answerText("Наличные");
             main.click("VC4");
         },
         {"Информация: Кошелек успешно добавлен"},
         {{"Combo1", ""}, {"T1", ""}},
         "Purse_Dict",
         {"1 | Наличные | NULL | NULL"}},
        {"opening writes nothing",
         [&] { openPurse(main, cash); },
         {},
         {{"T1", "Наличные"}, {"T4", "0"}},
         "Purse",
         {"1 | 0"}},
        {"cash into the purse, which closes",
         [&] {
             main.click("O3");
             main.enter("T14", "5000");
             main.click("Command2");
         },
         {"Информация: Сумма в размере 5000 добавлена в кошелек"},
         {{"T1", ""}, {"T4", ""}, {"T14", ""}, {"T10", "5 000,00 р."}, {"T11", "40 000,00 р."}},
         "Purse",
         {"1 | 5000"}},
        {"an expense from the open purse, rounded to kopecks",
         [&] {
             openPurse(main, cash);
             main.choose("R2", "1 - Питание");
             main.enter("R1", "10,125");
             main.enter("R3", "Яблоки 'свои'");
             main.enter("R4", "\"Антоновка\"");
             main.click("B3");
         },
         {"Информация: Расход на сумму - 10,125\r\nЗа - Яблоки 'свои'\r\nУспешно добавлен!"},
         {{"R1", ""}, {"R3", ""}, {"R4", ""}, {"T4", "4989,87"}, {"T10", "4 989,87 р."}, {"S2", "10,13"}},
         "Bills",
         {"1 | 2026-03-15 | 1 | 10.13 | Яблоки 'свои' | \"Антоновка\" | 1"}},
        {"the next expense keeps account, date and purse",
         [&] {
             main.enter("R1", "1200");
             main.enter("R3", "Мясо");
             main.click("B3");
         },
         {"Информация: Расход на сумму - 1200\r\nЗа - Мясо\r\nУспешно добавлен!"},
         {{"R2", "1 - Питание"},
          {"T1", "Наличные"},
          {"T4", "3789,87"},
          {"S2", "1210,13"},
          {"T12", "15.03.2026"}},
         "Purse",
         {"1 | 3789.87"}},
        {"cash back to the bank",
         [&] {
             main.click("O4");
             main.enter("T14", "1000");
             main.click("Command2");
         },
         {"Информация: Сумма в размере 1000 снята с кошелька"},
         {{"T1", ""}, {"T10", "2 789,87 р."}, {"T11", "41 000,00 р."}},
         "Purse",
         {"1 | 2789.87"}},
        {"a new name keeps the code",
         [&] {
             openPurse(main, cash);
             main.enter("T1", "Кошелёк 'семейный'");
             main.enter("T3", "на продукты");
             main.click("VC2");
         },
         {"Информация: Изменеия успешно внесены"},
         {{"T1", ""}, {"T3", ""}, {"Combo1", ""}},
         "Purse_Dict",
         {"1 | Кошелёк 'семейный' | NULL | на продукты"}},
        {"deleting after Yes: its cash is the bank's again",
         [&] {
             openPurse(main, "1 - Кошелёк 'семейный'");
             w.dialogs.answer(ui::DialogAnswer::Yes);
             main.click("VC3");
         },
         {"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!", "Информация: Кошелек успешно удален"},
         {{"T1", ""}, {"T10", "0,00 р."}, {"T11", "43 789,87 р."}, {"S2", "1210,13"}},
         "Purse",
         {}},
    };
    for (const Step& step : steps) {
        step.act();
        QVERIFY2(w.newBoxes() == step.boxes, step.what);
        const QString differ = differences(main, step.fields);
        QVERIFY2(differ.isEmpty(), qPrintable(QString(step.what) + ": " + differ));
        QVERIFY2(w.rows(step.table) == step.rows, step.what);
    }
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 43789.87 | NULL"});
    QCOMPARE(w.rows("Bills").size(), 2);
    QVERIFY(main.items("Combo1").isEmpty() && main.enabled("Combo1"));
    QCOMPARE(w.dialogs.asked().first().prompt, QString("Введите комментарий для суммы 45000"));
}

// Lists in code order with nothing chosen; the money in purses and in the
// bank, and this and the previous month's income and expenses.
void MainWindowTest::whatTheWindowShowsOfADataFile()
{
    DataBuilder d;
    d.account(10, "Транспорт").account(2, "Питание").account(9, "Связь");
    d.balance("1000").purse(3, "Карта", "50,25").purse(1, "Наличные", "100").purseWithoutMoney(12, "Копилка");
    d.bank(QDate(2026, 3, 1), "100").bank(QDate(2026, 3, 14), "-250,5").bill(QDate(2026, 3, 2), 1, "12,3");
    d.bank(QDate(2026, 2, 5), "3000").bill(QDate(2026, 2, 7), 1, "40").bill(QDate(2026, 2, 28), 2, "2,05");
    WindowDriver w(d, QDate(2026, 3, 31));
    QVERIFY(w.start());
    const Form main = w.main();
    QCOMPARE(main.items("R2"), QStringList({"2 - Питание", "9 - Связь", "10 - Транспорт"}));
    QCOMPARE(main.items("Combo1"), QStringList({"1 - Наличные", "3 - Карта", "12 - Копилка"}));
    QStringList shown;
    for (const char* name : {"R2", "Combo1", "T12", "T10", "T11", "S1", "S2", "S3", "S4"})
        shown.append(main.text(name));
    QCOMPARE(shown, QStringList(
                        {"", "", "31.03.2026", "150,25 р.", "849,75 р.", "-150,5", "12,3", "3000", "42,05"}));
}

void MainWindowTest::refreshShowsWhatChangedMeanwhile()
{
    DataBuilder d;
    d.balance("100").account(1, "Питание").purse(1, "Наличные", "30");
    WindowDriver w(d);
    QVERIFY(w.start());
    const Form main = w.main();
    QCOMPARE(main.text("T11"), QString("70,00 р."));
    // Another copy of the program books a deposit and a new account.
    store::Store other(w.folder().path());
    {
        store::Transaction tx(other);
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 3, 2), *store::Amount::parse(u"700"), "x"});
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {*store::Amount::parse(u"800")});
        tx.execute("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)", {5, "Связь"});
        QVERIFY(tx.commit().ok());
    }
    // A purse open for editing is closed by the refresh.
    openPurse(main, "1 - Наличные");
    main.field("T14")->setText("5");
    w.frame().mainWindow()->refreshListsAndBalances();
    w.frame().mainWindow()->refreshMonthStatistics();
    QCOMPARE(main.text("T11"), QString("770,00 р."));
    QCOMPARE(main.text("S1"), QString("700"));
    QCOMPARE(main.items("R2"), QStringList({"1 - Питание", "5 - Связь"}));
    for (const char* field : {"T1", "T4", "T14"})
        QVERIFY2(main.text(field).isEmpty(), field);
    QVERIFY(main.enabled("Combo1"));
    QVERIFY(w.dialogs.shown().isEmpty());
}

// In every window: Enter in a field goes to the next field of its frame, in
// the frame's last field it presses the frame's operation, on a button it
// presses that button; no other button fires.
void MainWindowTest::enterMovesOnInAFrameAndRunsItsOperation()
{
    DataBuilder d;
    d.account(3, "Питание").purse(1, "Наличные", "100");
    WindowDriver w(d);
    QVERIFY(w.start());
    const Form service = w.service();
    const Form analytics = w.analytics();
    w.frame().showChartsWindow({}, {});
    w.frame().analyticsWindow()->setReportViewer([](const analytics::ReportDocument&) {});
    const Form main = w.main();
    const Form charts = w.charts();
    struct Case
    {
        const Form& window;
        const char* control;
        const char* next;    // the field that gets the focus
        const char* pressed; // the button that fires
        Qt::Key key = Qt::Key_Return;
    };
    const Case cases[] = {
        {main, "R1", "R2", nullptr},
        {main, "R4", nullptr, "B3"},
        {main, "T9", nullptr, "Command1", Qt::Key_Enter},
        {main, "T12", "T12", nullptr},
        {main, "Combo1", nullptr, "VC1"},
        {main, "T14", nullptr, "Command2"},
        {main, "T3", nullptr, "VC2"},
        {main, "B2", nullptr, "B2"},
        {service, "Combo1A", nullptr, "VC1A"},
        {service, "Combo1B", "Combo1C", nullptr},
        {service, "T12", nullptr, "С12"},
        {service, "Combo2", nullptr, "C15"},
        {service, "T8", nullptr, "B7"},
        {service, "C1", nullptr, "C1"},
        {charts, "T2", nullptr, "Command1"},
        {analytics, "Combo1", "Combo2", nullptr},
        {analytics, "Combo2", nullptr, "B1"},
        {analytics, "B4", nullptr, "B4"},
    };
    for (const Case& c : cases) {
        QWidget* const window = c.window.widget();
        const QString row = window->objectName() + "." + c.control;
        std::vector<std::pair<QString, std::unique_ptr<QSignalSpy>>> spies;
        for (QPushButton* button : window->findChildren<QPushButton*>())
            spies.emplace_back(button->objectName(),
                               std::make_unique<QSignalSpy>(button, &QPushButton::clicked));
        QWidget* control = c.window.control(c.control);
        control->setFocus();
        QTest::keyClick(control, c.key, c.key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
        if (c.next)
            QVERIFY2(window->focusWidget() == c.window.control(c.next), qPrintable(row));
        for (const auto& [name, spy] : spies)
            QVERIFY2(spy->count() == (name == utf8(c.pressed ? c.pressed : "")),
                     qPrintable(row + " " + name));
    }
    QTRY_VERIFY(!w.frame().analyticsWindow());
    QVERIFY(rows(w.frame().store(), "Bank").empty() && rows(w.frame().store(), "Bills").empty());
}

void MainWindowTest::wrongInputWritesNothing_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QStringList>("boxes"); // each box's beginning, in order
    const auto bank = [](const char* date, const char* amount) {
        return Act([=](WindowDriver& w) {
            w.main().enter("T12", date);
            w.main().enter("T9", amount);
            w.main().click("Command1");
        });
    };
    const auto purse = [](bool open, const char* amount) {
        return Act([=](WindowDriver& w) {
            if (open)
                openPurse(w.main());
            w.main().enter("T14", amount);
            w.main().click("Command2");
        });
    };
    const auto press = [](const char* button) {
        return Act([=](WindowDriver& w) { w.main().click(button); });
    };
    const auto expenseRow = [](bool p, bool a, const char* amount) {
        return Act([=](WindowDriver& w) { expense(w, p, a, amount); });
    };
    QTest::newRow("bank: letters") << bank("15.03.2026", "12a") << QStringList{kNumber};
    QTest::newRow("bank: no such day") << bank("31.02.2026", "100") << QStringList{kDate};
    QTest::newRow("purse: none open")
        << purse(false, "5") << QStringList{"Ошибка: Необходимо вызвать Кошелек на редакцию!"};
    QTest::newRow("purse: letters") << purse(true, "сто") << QStringList{kNumber};
    QTest::newRow("expense: no purse open") << expenseRow(false, true, "10") << QStringList{kExpenseFields};
    QTest::newRow("expense: no account") << expenseRow(true, false, "10") << QStringList{kExpenseFields};
    QTest::newRow("expense: no such day") << Act([](WindowDriver& w) {
        w.main().enter("T12", "2026-02-30");
        expense(w, true, true, "10");
    }) << QStringList{kDate};
    QTest::newRow("nothing chosen to edit")
        << press("VC1") << QStringList{"Ошибка: Необходимо выбрать кошелек для редакции"};
    QTest::newRow("nothing chosen to save")
        << press("VC2") << QStringList{"Ошибка: Необходимо задать код кошелька, например - 2"};
    QTest::newRow("a name typed, nothing chosen, to delete") << Act([](WindowDriver& w) {
        w.main().enter("T1", "Без кода");
        w.main().click("VC3");
    }) << QStringList{"Ошибка: Необходимо выбрать кошелек для удаления"};
    QTest::newRow("new purse cancelled") << press("VC4") << QStringList{};
    QTest::newRow("deleting answered No") << Act([](WindowDriver& w) {
        openPurse(w.main(), "2 - Карта");
        w.main().click("VC3");
        QVERIFY(w.main().text("T1").isEmpty() && w.main().enabled("Combo1"));
    }) << QStringList{"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!"};
    QTest::newRow("a comment longer than its column") << Act([](WindowDriver& w) {
        w.main().enter("T9", "-0,5");
        w.dialogs.answerText(QString(256, u'ю'));
        w.main().click("Command1");
    }) << QStringList{"Ошибка: Комментарий не может быть длиннее 255 символов!"};
    QTest::newRow("the next purse code beyond the code column") << Act([](WindowDriver& w) {
        w.dialogs.answerText("Лишний");
        w.main().click("VC4");
    }) << QStringList{"Velmora: Error number: 275\r"};
}

// The data file and the fields the user typed stay as they were.
void MainWindowTest::wrongInputWritesNothing()
{
    QFETCH(Act, act);
    QFETCH(QStringList, boxes);
    DataBuilder data;
    data.balance("1000").account(3, "Питание").purse(1, "Наличные", "100").purse(2, "Карта", "0");
    data.purse(2147483647, "Последний", "0");
    WindowDriver w(data);
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    act(w);
    const QStringList shown = w.newBoxes();
    QCOMPARE(shown.size(), boxes.size());
    for (int i = 0; i < boxes.size(); ++i)
        QVERIFY2(shown[i].startsWith(boxes[i]), qPrintable(shown[i]));
    QCOMPARE(w.bytes(), before);
    QCOMPARE(w.main().items("Combo1").size(), 3);
    QCOMPARE(w.main().text("T11"), QString("900,00 р."));
}

// Neither option chosen is a withdrawal; Cancel in the comment box leaves
// it empty; the bank operation closes an open purse. A data file gone
// missing afterwards: a clear message and the program goes on.
void MainWindowTest::bankWithNeitherOptionWithdrawsAndClosesThePurse()
{
    DataBuilder data;
    data.balance("1000").purse(1, "Наличные", "100");
    WindowDriver w(data);
    QVERIFY(w.start());
    openPurse(w.main());
    w.main().enter("T9", "12,345");
    w.main().click("Command1");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: Сумма в размере 12,345 снята"});
    QCOMPARE(w.dialogs.shown().last().icon, ui::DialogIcon::Information);
    QCOMPARE(w.rows("Bank"), QStringList({"1 | 2026-03-15 | -12.34 | "}));
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 987.66 | NULL"});
    QVERIFY(w.main().text("T1").isEmpty() && w.main().enabled("Combo1"));
    QCOMPARE(w.main().text("T11"), QString("887,66 р."));

    QVERIFY(QFile::remove(w.folder().dataFilePath()));
    w.main().enter("T9", "10");
    w.main().click("Command1");
    const QStringList missing = w.newBoxes();
    QCOMPARE(missing.size(), 1);
    QVERIFY2(missing[0].contains("не найден"), qPrintable(missing[0]));
    QCOMPARE(w.main().text("T9"), QString("10"));
    QVERIFY(!w.folder().hasDataFile() && w.quitCodes.isEmpty());
}

// Whatever the layout makes of the keypad's decimal key (a point, a comma, no
// text), an amount gets a decimal comma and the date a dot.
void MainWindowTest::keypadDecimalKey()
{
    WindowDriver w{DataBuilder()};
    QVERIFY(w.start());
    const Form main = w.main();
    const auto keypad = [&](const char* name, Qt::Key key, const QString& typed) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::KeypadModifier, typed);
        QApplication::sendEvent(main.field(name), &press);
    };
    main.enter("T9", "123");
    keypad("T9", Qt::Key_Period, ".");
    Form::type(main.field("T9"), "45");
    main.enter("R1", "7");
    keypad("R1", Qt::Key_Comma, ",");
    Form::type(main.field("R1"), "5");
    main.enter("T14", "1");
    keypad("T14", Qt::Key_Period, "");
    Form::type(main.field("T14"), "25");
    main.enter("T12", "16");
    keypad("T12", Qt::Key_Comma, ",");
    Form::type(main.field("T12"), "03");
    keypad("T12", Qt::Key_Period, ".");
    Form::type(main.field("T12"), "2026");
    QCOMPARE(QStringList({main.text("T9"), main.text("R1"), main.text("T14"), main.text("T12")}),
             QStringList({"123,45", "7,5", "1,25", "16.03.2026"}));
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
