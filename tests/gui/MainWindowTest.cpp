// The main window: a household's week through its buttons (the golden
// scenario), what it shows of a data file and after a refresh, Enter in every
// window, and what its buttons do with wrong or missing input: the program's
// own messages in their order, nothing written, the program going on.
#include "app/MainWindow.h"
#include "WindowDriver.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "support/StoreCalls.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

using namespace velmora::test;

namespace {

// Types `before`, the keypad's decimal key as the layout gives it (a point, a
// comma or no text), then `after`.
void typeWithKeypad(const Form& form, const char* field, const QString& before, Qt::Key key,
                    const QString& keyText, const QString& after)
{
    form.enter(field, before);
    QKeyEvent press(QEvent::KeyPress, key, Qt::KeypadModifier, keyText);
    QApplication::sendEvent(form.field(field), &press);
    Form::type(form.field(field), after);
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void aWeekOfTheHousehold();
    void whatTheWindowShowsOfADataFileAndAfterARefresh();
    void enterMovesOnInAFrameAndRunsItsOperation();
    void wrongInputWritesNothing();
};

// Every step through the real buttons, then the window's fields and the data
// file's rows compared with what they must be. Whatever the keypad's decimal
// key gives, an amount gets a decimal comma and the date a dot.
void MainWindowTest::aWeekOfTheHousehold()
{
    WindowDriver w(DataBuilder().account(1, "Питание").account(2, "Транспорт"));
    QVERIFY(w.start());
    const Form main = w.main();
    typeWithKeypad(main, "T9", "45000", Qt::Key_Period, ".", "0");
    typeWithKeypad(main, "T12", "15", Qt::Key_Comma, ",", "03.2026");
    w.dialogs.answerText("Зарплата за март");
    w.act(main, "O1|Command1");
    w.expect({"Ошибка: Сумма в размере 45000,0 добавлена"}, true);
    QVERIFY(w.dialogs.asked().first().endsWith(": Введите комментарий для суммы 45000,0 []"));
    QCOMPARE(main.texts({"T9", "T11", "T10", "S1"}), QStringList({"", "45 000,00 р.", "0,00 р.", "45000"}));
    QCOMPARE(w.rows("Bank"), QStringList{"1 | 2026-03-15 | 45000 | Зарплата за март"});
    w.dialogs.answerText("Наличные");
    main.click("VC4");
    w.expect({"Информация: Кошелек успешно добавлен"}, true);
    // Opening writes nothing; cash into the purse closes it.
    w.act(main, "Combo1=1 - Наличные|VC1");
    QCOMPARE(main.texts({"T1", "T4"}), QStringList({"Наличные", "0"}));
    main.click("O3");
    typeWithKeypad(main, "T14", "5000", Qt::Key_Period, "", "0");
    main.click("Command2");
    w.expect({"Информация: Сумма в размере 5000,0 добавлена в кошелек"}, true);
    QCOMPARE(main.texts({"T1", "T4", "T14", "T10", "T11"}),
             QStringList({"", "", "", "5 000,00 р.", "40 000,00 р."}));
    // Expenses from the open purse, rounded to kopecks; the next keeps account, date and purse.
    w.act(main, "Combo1=1 - Наличные|VC1|R2=1 - Питание");
    typeWithKeypad(main, "R1", "10", Qt::Key_Comma, ",", "125");
    w.act(main, "R3=Яблоки 'свои'|R4=\"Антоновка\"|B3|R1=1200|R3=Мясо|B3");
    w.expect({"Информация: Расход на сумму - 10,125\r\nЗа - Яблоки 'свои'\r\nУспешно добавлен!",
              "Информация: Расход на сумму - 1200\r\nЗа - Мясо\r\nУспешно добавлен!"},
             true);
    QCOMPARE(main.texts({"R1", "R3", "R4", "R2", "T1", "T4", "T10", "S2", "T12"}),
             QStringList(
                 {"", "", "", "1 - Питание", "Наличные", "3789,87", "3 789,87 р.", "1210,13", "15.03.2026"}));
    QCOMPARE(w.rows("Bills").first(),
             QString("1 | 2026-03-15 | 1 | 10.13 | Яблоки 'свои' | \"Антоновка\" | 1"));
    w.act(main, "O4|T14=1000|Command2");
    w.expect({"Информация: Сумма в размере 1000 снята с кошелька"}, true);
    QCOMPARE(main.texts({"T1", "T10", "T11"}), QStringList({"", "2 789,87 р.", "41 000,00 р."}));
    // A new name keeps the code.
    w.act(main, "Combo1=1 - Наличные|VC1|T1=Кошелёк 'семейный'|T3=на продукты|VC2");
    w.expect({"Информация: Изменеия успешно внесены"}, true);
    QCOMPARE(main.texts({"T1", "T3", "Combo1"}), QStringList({"", "", ""}));
    // Deleting after Yes: its cash is the bank's again.
    w.act(main, "Combo1=1 - Кошелёк 'семейный'|VC1");
    QCOMPARE(main.text("T3"), QString("на продукты"));
    w.act(main, "yes|VC3");
    w.expect(
        {"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!", "Информация: Кошелек успешно удален"},
        true);
    QCOMPARE(main.texts({"T1", "T10", "T11", "S2"}), QStringList({"", "0,00 р.", "43 789,87 р.", "1210,13"}));
    QVERIFY(w.rows("Purse").isEmpty() && main.items("Combo1").isEmpty() && main.enabled("Combo1"));
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 43789.87 | NULL"});
}

// Lists in code order with nothing chosen; the money in purses and in the
// bank, this and the previous month's income and expenses; then what another
// copy of the program wrote, after a refresh that closes the open purse.
void MainWindowTest::whatTheWindowShowsOfADataFileAndAfterARefresh()
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
    QCOMPARE(
        main.texts({"R2", "Combo1", "T12", "T10", "T11", "S1", "S2", "S3", "S4"}),
        QStringList({"", "", "31.03.2026", "150,25 р.", "849,75 р.", "-150,5", "12,3", "3000", "42,05"}));
    store::Store other(w.folder().path());
    {
        store::Transaction tx(other);
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 3, 2), *store::Amount::parse(u"700"), "x"});
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {*store::Amount::parse(u"1700")});
        tx.execute("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)", {5, "Связь"});
        QVERIFY(tx.commit().ok());
    }
    w.act(main, "Combo1=1 - Наличные|VC1|T14=5");
    w.frame().mainWindow()->refreshListsAndBalances();
    w.frame().mainWindow()->refreshMonthStatistics();
    QCOMPARE(main.texts({"T11", "S1", "T1", "T4", "T14"}), QStringList({"1 549,75 р.", "549,5", "", "", ""}));
    QCOMPARE(main.items("R2").at(1), QString("5 - Связь"));
    QVERIFY(main.enabled("Combo1") && w.dialogs.shown().isEmpty());
    // Neither option chosen is a withdrawal; Cancel in the comment box leaves
    // it empty; the bank operation closes an open purse.
    w.act(main, "Combo1=1 - Наличные|VC1|T9=12,345|Command1");
    w.expect({"Ошибка: Сумма в размере 12,345 снята"}, true);
    QCOMPARE(w.dialogs.shown().last().icon, ui::DialogIcon::Information);
    QVERIFY(w.rows("Bank").last().endsWith(" | 2026-03-31 | -12.34 | "));
    QCOMPARE(main.texts({"T1", "T11"}), QStringList({"", "1 537,41 р."}));
    // A data file gone missing: a clear message and the program goes on.
    QVERIFY(QFile::remove(w.folder().dataFilePath()));
    w.act(main, "T9=10|Command1");
    const QStringList missing = w.newBoxes();
    QVERIFY2(missing.size() == 1 && missing[0].contains("не найден"), qPrintable(missing.join('\n')));
    QVERIFY(main.text("T9") == "10" && w.quitCodes.isEmpty());
}

// In every window: Enter in a field goes to the next field of its frame, in
// the frame's last field it presses the frame's operation, on a button it
// presses that button; no other button fires.
void MainWindowTest::enterMovesOnInAFrameAndRunsItsOperation()
{
    WindowDriver w(DataBuilder().account(3, "Питание").purse(1, "Наличные", "100"));
    QVERIFY(w.start());
    const Form service = w.service();
    const Form analytics = w.analytics();
    w.frame().showChartsWindow({}, {});
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
        {main, "B2", nullptr, "B2"},
        {service, "Combo1B", "Combo1C", nullptr},
        {service, "Combo2", nullptr, "C15"},
        {service, "T8", nullptr, "B7"},
        {service, "C1", nullptr, "C1"},
        {charts, "T2", nullptr, "Command1"},
        {analytics, "Combo1", "Combo2", nullptr},
        {analytics, "Combo2", nullptr, "B1"},
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
    QVERIFY(rows(w.frame().store(), "Bank").empty() && rows(w.frame().store(), "Bills").empty());
}

// One refusal after another: the data file and the money shown stay as they were.
void MainWindowTest::wrongInputWritesNothing()
{
    DataBuilder data;
    data.balance("1000").account(3, "Питание").purse(1, "Наличные", "100").purse(2, "Карта", "0");
    data.purse(2147483647, "Последний", "0");
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form main = w.main();
    const QString number = "Ошибка: Необходимо вводить число!",
                  date = "Ошибка: Необходимо задать правильную дату";
    const QString fields = "Ошибка: Необходимо указать номер счета, сумму расхода и выбрать кошелек!";
    w.act(main, "VC1|VC2|VC4|T1=Без кода|VC3|Combo1=2 - Карта|VC1|VC3");
    QVERIFY(main.text("T1").isEmpty() && main.enabled("Combo1"));
    w.expect({"Ошибка: Необходимо выбрать кошелек для редакции",
              "Ошибка: Необходимо задать код кошелька, например - 2",
              "Ошибка: Необходимо выбрать кошелек для удаления",
              "ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление"},
             false);
    w.act(main, "T9=12a|Command1|T9=100|O1|T12=31.02.2026|Command1|T12=15.03.2026|T14=5|Command2");
    const QString open = "Combo1=1 - Наличные|VC1|", expense = "|R1=10|R3=Хлеб|B3";
    w.act(main, "Combo1=1 - Наличные|R2=3 - Питание" + expense); // the purse chosen, not opened
    w.act(main, open + "T14=сто|Command2|" + open + "R2=" + expense);
    w.act(main, "T12=2026-02-30|" + open + "R2=3 - Питание" + expense + "|T12=15.03.2026");
    w.expect({number, date, "Ошибка: Необходимо вызвать Кошелек на редакцию!", fields, number, fields, date},
             false);
    w.dialogs.answerText(QString(256, u'ю'));
    w.act(main, "T9=-0,5|Command1");
    // The next purse code lies beyond the code column.
    w.dialogs.answerText("Лишний");
    main.click("VC4");
    w.expect({"Ошибка: Комментарий не может быть длиннее 255 символов!", "Velmora: Error number: 275\r"},
             false);
    QCOMPARE(main.items("Combo1").size(), 3);
    QCOMPARE(main.text("T11"), QString("900,00 р."));
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
