// What the main window's buttons do with wrong or missing input: the
// program's own messages in their order, nothing written, and the program
// going on; the keypad's decimal key.
#include "WindowDriver.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTest>

#include <functional>

using namespace velmora::test;

namespace {

const QString kNumber = "Ошибка: Необходимо вводить число!";
const QString kDate = "Ошибка: Необходимо задать правильную дату операции!";
const QString kExpenseFields = "Ошибка: Необходимо указать номер счета, сумму расхода и выбрать кошелек!";
const QString kCash = "1 - Наличные";

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

class MoneyInputTest : public QObject
{
    Q_OBJECT

private slots:
    void wrongInputWritesNothing_data();
    void wrongInputWritesNothing();
    void bankWithNeitherOptionWithdrawsAndClosesThePurse();
    void keypadDecimalKey();
};

void MoneyInputTest::wrongInputWritesNothing_data()
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
void MoneyInputTest::wrongInputWritesNothing()
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
void MoneyInputTest::bankWithNeitherOptionWithdrawsAndClosesThePurse()
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
void MoneyInputTest::keypadDecimalKey()
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

QTEST_MAIN(MoneyInputTest)
#include "MoneyInputTest.moc"
