// What the main window's money buttons do with wrong or unusual input: the
// program's own message, in its order, and nothing written; texts stored as
// typed; the keypad's decimal key; a failing statement stopping a handler.
#include "MoneyWindowDriver.h"
#include "app/MainWindowTexts.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTest>

using namespace velmora::test;

namespace {

const QString kNumber = "Ошибка: Необходимо вводить число!";
const QString kDate = "Ошибка: Необходимо задать правильную дату операции!";
const QString kExpenseFields = "Ошибка: Необходимо указать номер счета, сумму расхода и выбрать кошелек!";
const QString kCash = "1 - Наличные";

DataBuilder household()
{
    DataBuilder data;
    data.balance("1000").account(3, "Питание").purse(1, "Наличные", "100").purse(2, "Карта", "0");
    return data;
}

} // namespace

class MoneyInputTest : public QObject
{
    Q_OBJECT

private slots:
    void badAmountsAndDates_data();
    void badAmountsAndDates();
    void expenseChecksItsFieldsInOrder_data();
    void expenseChecksItsFieldsInOrder();
    void purseButtonsNeedAPurse();
    void bankChoicesAndComments();
    void textsAreStoredAsTyped();
    void keypadDecimalKey();
    void failingStatementStopsTheHandler();
    void figuresBeyondTheRangeAreRefused_data();
    void figuresBeyondTheRangeAreRefused();
};

void MoneyInputTest::badAmountsAndDates_data()
{
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("message");
    for (const char* amount : {"", "сто", "12a", "1,2,3", "1.2.3", "١٢", "1 000", "1e3", "--5",
                               "922337203685478", "99999999999999999999"})
        QTest::addRow("amount \"%s\"", amount) << QString(amount) << "15.03.2026" << kNumber;
    for (const char* date : {"31.02.2026", "2026-13-01", "вчера", "", "15/03/2026", "29.02.2025"})
        QTest::addRow("date \"%s\"", date) << "100" << QString(date) << kDate;
    QTest::newRow("both wrong: the amount is reported") << "x"
                                                        << "32.01.2026" << kNumber;
}

// The same wrong input in the bank, the purse and the expense frames.
void MoneyInputTest::badAmountsAndDates()
{
    QFETCH(QString, amount);
    QFETCH(QString, date);
    QFETCH(QString, message);
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    w.enter("T12", date);

    w.enter("T9", amount);
    w.click("O1");
    w.click("Command1");
    QCOMPARE(w.newBoxes(), QStringList{message});
    QVERIFY(w.dialogs().asked().isEmpty());
    CHECK_FIELDS(w, {{"T9", ""}, {"T11", "900,00 р."}, {"T12", date}});

    w.openPurse(kCash);
    w.choose("R2", "3 - Питание");
    w.enter("R1", amount);
    w.enter("R3", "Хлеб");
    w.click("B3");
    w.enter("T14", amount);
    w.click("Command2");
    // The purse frame has no date; a wrong date there is no fault.
    if (message == kNumber)
        QCOMPARE(w.newBoxes(), QStringList({kExpenseFields, kNumber}));
    else
        QCOMPARE(w.newBoxes(), QStringList({kDate, "Информация: Сумма в размере 100 снята с кошелька"}));
    if (message == kNumber) {
        CHECK_FIELDS(w, {{"R1", amount}, {"R3", "Хлеб"}, {"T14", amount}, {"T1", "Наличные"}, {"T4", "100"}});
        QVERIFY(!w.isEnabled("Combo1"));
        QCOMPARE(w.bytes(), before);
    } else {
        CHECK_FIELDS(w, {{"R1", "100"}, {"R3", "Хлеб"}, {"T1", ""}});
        QVERIFY(w.rows("Purse").contains("1 | 0"));
        QVERIFY(w.rows("Bills").isEmpty());
    }
    QVERIFY(w.rows("Bank").isEmpty());
}

void MoneyInputTest::expenseChecksItsFieldsInOrder_data()
{
    QTest::addColumn<bool>("purseOpen");
    QTest::addColumn<bool>("accountChosen");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("message");
    QTest::newRow("no purse open") << false << true << "10"
                                   << "15.03.2026" << kExpenseFields;
    QTest::newRow("no account") << true << false << "10"
                                << "15.03.2026" << kExpenseFields;
    QTest::newRow("no amount") << true << true << ""
                               << "15.03.2026" << kExpenseFields;
    QTest::newRow("nothing, and a wrong date") << false << false << ""
                                               << "0.0.0" << kExpenseFields;
    QTest::newRow("wrong date") << true << true << "10"
                                << "2026-02-30" << kDate;
    QTest::newRow("everything right") << true << true << "10"
                                      << "1.3.2026"
                                      << "Информация: Расход на сумму - 10\r\nЗа - Хлеб\r\nУспешно добавлен!";
}

void MoneyInputTest::expenseChecksItsFieldsInOrder()
{
    QFETCH(bool, purseOpen);
    QFETCH(bool, accountChosen);
    QFETCH(QString, amount);
    QFETCH(QString, date);
    QFETCH(QString, message);
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    if (purseOpen)
        w.openPurse(kCash);
    else
        w.choose("Combo1", kCash); // chosen, but not opened
    if (accountChosen)
        w.choose("R2", "3 - Питание");
    w.enter("R1", amount);
    w.enter("R3", "Хлеб");
    w.enter("T12", date);
    w.click("B3");
    QCOMPARE(w.newBoxes(), QStringList{message});
    const bool booked = message.startsWith("Информация");
    CHECK_FIELDS(w, {{"R1", booked ? "" : amount}, {"R3", booked ? "" : "Хлеб"}, {"T12", date}});
    QCOMPARE(w.rows("Bills"), booked ? QStringList{"1 | 2026-03-01 | 3 | 10 | Хлеб |  | 1"} : QStringList());
    QVERIFY(w.rows("Purse").contains(booked ? "1 | 90" : "1 | 100"));
    QCOMPARE(w.balance(),
             booked ? QString("OSTATOK | NULL | 990 | NULL") : QString("OSTATOK | NULL | 1000 | NULL"));
}

void MoneyInputTest::purseButtonsNeedAPurse()
{
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    w.enter("T14", "5");
    w.click("Command2");
    w.click("VC1");
    w.click("VC2");
    w.click("VC3");
    // A name typed without a purse chosen names no purse.
    w.enter("T1", "Без кода");
    w.click("VC2");
    w.enter("T1", "Без кода");
    w.click("VC3");
    QCOMPARE(w.newBoxes(), QStringList({"Ошибка: Необходимо вызвать Кошелек на редакцию!",
                                        "Ошибка: Необходимо выбрать кошелек для редакции",
                                        "Ошибка: Необходимо задать код кошелька, например - 2",
                                        "Ошибка: Необходимо выбрать кошелек для удаления",
                                        "Ошибка: Необходимо задать код кошелька, например - 2",
                                        "Ошибка: Необходимо выбрать кошелек для удаления"}));
    // "Новый" with Cancel or an empty name adds nothing and says nothing.
    w.dialogs().cancelText();
    w.click("VC4");
    w.dialogs().answerText("");
    w.click("VC4");
    QVERIFY(w.newBoxes().isEmpty());
    QCOMPARE(w.bytes(), before);

    // "Удалить" answered No keeps the purse but closes it.
    w.openPurse("2 - Карта");
    QCOMPARE(w.text("T4"), QString("0"));
    w.click("VC3");
    QCOMPARE(w.newBoxes(), QStringList{"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!"});
    CHECK_FIELDS(w, {{"T1", ""}, {"T4", ""}, {"Combo1", ""}});
    QVERIFY(w.isEnabled("Combo1"));
    QCOMPARE(w.bytes(), before);

    // Neither "Положить" nor "Забрать" chosen takes money out.
    w.openPurse(kCash);
    w.enter("T14", "130");
    w.click("Command2");
    QCOMPARE(w.newBoxes(), QStringList{"Информация: Сумма в размере 130 снята с кошелька"});
    QCOMPARE(w.rows("Purse"), QStringList({"2 | 0", "1 | -30"}));
    CHECK_FIELDS(w, {{"T10", "-30,00 р."}, {"T11", "1 030,00 р."}});
}

void MoneyInputTest::bankChoicesAndComments()
{
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    // Neither option chosen is a withdrawal; Cancel in the comment box leaves it empty.
    w.enter("T9", "12,345");
    w.dialogs().cancelText();
    w.click("Command1");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: Сумма в размере 12,345 снята"});
    QCOMPARE(w.dialogs().shown().last().icon, ui::DialogIcon::Information);
    // A comment longer than its column is refused, nothing is written, and the
    // bank operation still closes an open purse.
    w.openPurse(kCash);
    w.click("O1");
    w.enter("T9", "-0,5");
    w.dialogs().answerText(QString(256, u'ю'));
    w.click("Command1");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: Комментарий не может быть длиннее 255 символов!"});
    CHECK_FIELDS(w, {{"T1", ""}, {"T9", ""}, {"T11", "887,66 р."}, {"S1", "-12,34"}});
    QVERIFY(w.isEnabled("Combo1"));
    QCOMPARE(w.rows("Bank"), QStringList({"1 | 2026-03-15 | -12.34 | "}));
    QCOMPARE(w.balance(), QString("OSTATOK | NULL | 987.66 | NULL"));
}

void MoneyInputTest::textsAreStoredAsTyped()
{
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    const QString name = "Д'Артаньян \"Мушкетёр\"\tё";
    const QString longest = QString(254, u'щ') + "'";
    w.openPurse(kCash);
    w.choose("R2", "3 - Питание");
    w.enter("R1", "1");
    w.field("R3")->setText(name); // a tab cannot be typed: it moves the focus
    w.enter("R4", longest + "не войдёт");
    QCOMPARE(w.text("R4"), longest);
    w.click("B3");
    QCOMPARE(w.rows("Bills"), QStringList{"1 | 2026-03-15 | 3 | 1 | " + name + " | " + longest + " | 1"});

    w.dialogs().answerText(name);
    w.click("VC4");
    w.openPurse("3 - " + name);
    w.enter("T3", "'");
    w.click("VC2");
    QCOMPARE(w.rows("Purse_Dict").last(), "3 | " + name + " | NULL | '");
    QCOMPARE(w.harness().items("Combo1").last(), "3 - " + name);
}

void MoneyInputTest::keypadDecimalKey()
{
    MoneyWindowDriver w(household());
    QVERIFY(w.start());
    const auto keypad = [&](const char* name, Qt::Key key, const QString& typed) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::KeypadModifier, typed);
        QApplication::sendEvent(w.field(name), &press);
    };
    // Whatever the layout makes of the key (a point, a comma, no text), an
    // amount gets a decimal comma and the date a dot.
    w.enter("T9", "123");
    keypad("T9", Qt::Key_Period, ".");
    GuiHarness::type(w.field("T9"), "45");
    w.enter("R1", "7");
    keypad("R1", Qt::Key_Comma, ",");
    GuiHarness::type(w.field("R1"), "5");
    w.enter("T14", "1");
    keypad("T14", Qt::Key_Period, "");
    GuiHarness::type(w.field("T14"), "25");
    w.enter("T12", "16");
    keypad("T12", Qt::Key_Comma, ",");
    GuiHarness::type(w.field("T12"), "03");
    keypad("T12", Qt::Key_Period, ".");
    GuiHarness::type(w.field("T12"), "2026");
    CHECK_FIELDS(w, {{"T9", "123,45"}, {"R1", "7,5"}, {"T14", "1,25"}, {"T12", "16.03.2026"}});
}

void MoneyInputTest::failingStatementStopsTheHandler()
{
    DataBuilder data = household();
    data.purse(2147483647, "Последний", "0");
    MoneyWindowDriver w(data);
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    // The next code would not fit the code column: the engine's box, no success box, nothing written.
    w.dialogs().answerText("Лишний");
    w.click("VC4");
    const QStringList boxes = w.newBoxes();
    QCOMPARE(boxes.size(), 1);
    QVERIFY2(boxes[0].startsWith("Velmora: Error number: 275\r"), qPrintable(boxes[0]));
    QCOMPARE(w.bytes(), before);
    QCOMPARE(w.harness().items("Combo1").size(), 3);

    // A data file gone missing: a clear message, no success box, and the program goes on.
    QVERIFY(QFile::remove(w.folder().dataFilePath()));
    w.enter("T9", "10");
    w.dialogs().answerText("");
    w.click("Command1");
    const QStringList missing = w.newBoxes();
    QCOMPARE(missing.size(), 1);
    QVERIFY2(missing[0].contains("не найден"), qPrintable(missing[0]));
    QCOMPARE(w.text("T9"), QString("10"));
    QVERIFY(!w.folder().hasDataFile());
    QVERIFY(w.harness().quitCodes.isEmpty());
}

void MoneyInputTest::figuresBeyondTheRangeAreRefused_data()
{
    QTest::addColumn<bool>("deposit");
    QTest::addColumn<QString>("bankAmount");
    QTest::addColumn<bool>("putIn");
    QTest::addColumn<QString>("purseAmount");
    QTest::addColumn<QString>("bank"); // T11 after the bank operation, and after a restart
    QTest::newRow("withdraw 9e14, put 1e14 in a purse")
        << false << "900000000000000" << true << "100000000000000"
        << "-900 000 000 000 000,00 р.";
    QTest::newRow("deposit 1e14, take 9e14 from a purse")
        << true << "100000000000000" << false << "900000000000000"
        << "100 000 000 000 000,00 р.";
}

// The purse operation would put "В банке" outside what the data file's money
// columns hold: refused, nothing written, and the program starts again on the file.
void MoneyInputTest::figuresBeyondTheRangeAreRefused()
{
    QFETCH(bool, deposit);
    QFETCH(QString, bankAmount);
    QFETCH(bool, putIn);
    QFETCH(QString, purseAmount);
    QFETCH(QString, bank);
    MoneyWindowDriver w(DataBuilder{});
    QVERIFY(w.start());
    w.dialogs().answerText("A");
    w.click("VC4");
    w.enter("T9", bankAmount);
    w.click(deposit ? "O1" : "O2");
    w.dialogs().answerText("");
    w.click("Command1");
    const QByteArray written = w.bytes();
    w.openPurse("1 - A");
    w.click(putIn ? "O3" : "O4");
    w.enter("T14", purseAmount);
    w.click("Command2");
    QCOMPARE(w.newBoxes().last(), "Ошибка: " + utf8(store::texts::amountOutOfRange));
    QCOMPARE(w.bytes(), written);
    CHECK_FIELDS(w, {{"T10", "0,00 р."}, {"T11", bank}, {"T4", "0"}});

    GuiHarness again(w.folder());
    QVERIFY(again.start());
    QCOMPARE(again.text("T11"), bank);
    QVERIFY(again.dialogs.shown().isEmpty());
}

QTEST_MAIN(MoneyInputTest)
#include "MoneyInputTest.moc"
