// A household's week in the main window: every step through the real
// buttons, with the boxes answered by script, and after each step the
// window's fields and the data file's rows compared with what they must be.
// With VELMORA_SCREENSHOT_DIR set, it also saves the pictures of the window
// with a purse open and after an expense.
#include "MoneyWindowDriver.h"
#include "app/MainWindowTexts.h"
#include "ui/UiTexts.h"

#include <QDir>
#include <QTest>

#include <memory>

using namespace velmora::test;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

DataBuilder household()
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(3, "Связь");
    return data;
}

QString info(const QString& message)
{
    return text(ui::texts::informationTitle) + ": " + message;
}

void screenshot(GuiHarness& h, const char* name)
{
    const QString folder = qEnvironmentVariable("VELMORA_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    QTRY_VERIFY(!h.frame().splashWindow());
    QVERIFY(h.frame().grab().save(QDir(folder).filePath(name)));
}

} // namespace

// The steps run in this order on one window and one data file.
class MoneyWeekTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void salaryIntoTheBank();
    void newPurse();
    void openingWritesNothing();
    void cashIntoThePurse();
    void threeExpensesInARow();
    void cashBackToTheBank();
    void renameKeepsTheCode();
    void deleteAfterYes();
    void cleanupTestCase();

private:
    std::unique_ptr<MoneyWindowDriver> m_w;
};

const QString kCash = "1 - Наличные";

void MoneyWeekTest::initTestCase()
{
    m_w = std::make_unique<MoneyWindowDriver>(household());
    QVERIFY(m_w->start());
}

void MoneyWeekTest::cleanupTestCase()
{
    m_w.reset();
}

void MoneyWeekTest::salaryIntoTheBank()
{
    MoneyWindowDriver& w = *m_w;
    w.enter("T9", "45000");
    w.click("O1");
    w.dialogs().answerText("Зарплата за март");
    w.click("Command1");
    QCOMPARE(w.dialogs().asked().last().prompt, QString("Введите комментарий для суммы 45000"));
    QCOMPARE(w.dialogs().asked().last().title, QString("Комментарий"));
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: Сумма в размере 45000 добавлена"});
    CHECK_FIELDS(w, {{"T9", ""}, {"T11", "45 000,00 р."}, {"T10", "0,00 р."}, {"S1", "45000"}});
    QCOMPARE(w.rows("Bank"), QStringList{"1 | 2026-03-15 | 45000 | Зарплата за март"});
    QCOMPARE(w.balance(), QString("OSTATOK | NULL | 45000 | NULL"));
}

void MoneyWeekTest::newPurse()
{
    MoneyWindowDriver& w = *m_w;
    w.dialogs().answerText("Наличные");
    w.click("VC4");
    QCOMPARE(w.dialogs().asked().last().title, text(app::texts::newPurseTitle));
    QCOMPARE(w.newBoxes(), QStringList{info("Кошелек успешно добавлен")});
    QCOMPARE(w.harness().items("Combo1"), QStringList{kCash});
    CHECK_FIELDS(w, {{"Combo1", ""}, {"T1", ""}, {"T4", ""}});
    QCOMPARE(w.rows("Purse_Dict"), QStringList{"1 | Наличные | NULL | NULL"});
    QCOMPARE(w.rows("Purse"), QStringList{"1 | 0"});
}

void MoneyWeekTest::openingWritesNothing()
{
    MoneyWindowDriver& w = *m_w;
    const QByteArray before = w.bytes();
    w.openPurse(kCash);
    CHECK_FIELDS(w, {{"T1", "Наличные"}, {"T3", ""}, {"T4", "0"}});
    QVERIFY(!w.isEnabled("Combo1"));
    QVERIFY(w.newBoxes().isEmpty());
    QCOMPARE(w.bytes(), before);
}

// Money moves from the bank to the purse, and the purse closes.
void MoneyWeekTest::cashIntoThePurse()
{
    MoneyWindowDriver& w = *m_w;
    w.click("O3");
    w.enter("T14", "5000");
    w.click("Command2");
    QCOMPARE(w.newBoxes(), QStringList{info("Сумма в размере 5000 добавлена в кошелек")});
    CHECK_FIELDS(w, {{"T1", ""}, {"T4", ""}, {"T14", ""}, {"T10", "5 000,00 р."}, {"T11", "40 000,00 р."}});
    QVERIFY(w.isEnabled("Combo1"));
    QCOMPARE(w.rows("Purse"), QStringList{"1 | 5000"});
    QCOMPARE(w.balance(), QString("OSTATOK | NULL | 45000 | NULL"));
}

// Paid from the open purse; account, date and purse stay for the next one.
void MoneyWeekTest::threeExpensesInARow()
{
    MoneyWindowDriver& w = *m_w;
    w.openPurse(kCash);
    screenshot(w.harness(), "main-window-purse-open.png");
    w.choose("R2", "1 - Питание");
    struct Expense
    {
        const char* amount;
        const char* name;
        const char* note;
        const char* stored;
        const char* state;
        const char* purses;
        const char* month;
    };
    const Expense expenses[] = {
        {"350,5", "Хлеб и молоко", "", "350.5", "4649,5", "4 649,50 р.", "350,5"},
        {"1200", "Мясо 'фермерское'", "на неделю", "1200", "3449,5", "3 449,50 р.", "1550,5"},
        {"10,125", "Яблоки", "\"Антоновка\"", "10.13", "3439,37", "3 439,37 р.", "1560,63"},
    };
    for (int i = 0; i < 3; ++i) {
        const Expense& e = expenses[i];
        w.enter("R1", e.amount);
        w.enter("R3", e.name);
        w.enter("R4", e.note);
        w.click("B3");
        QCOMPARE(w.newBoxes(),
                 QStringList{info(
                     QString("Расход на сумму - %1\r\nЗа - %2\r\nУспешно добавлен!").arg(e.amount, e.name))});
        CHECK_FIELDS(w, {{"R1", ""},
                         {"R3", ""},
                         {"R4", ""},
                         {"R2", "1 - Питание"},
                         {"T1", "Наличные"},
                         {"T4", e.state},
                         {"T10", e.purses},
                         {"T11", "40 000,00 р."},
                         {"S2", e.month},
                         {"T12", "15.03.2026"}});
        QCOMPARE(w.rows("Bills").size(), i + 1);
        QCOMPARE(w.rows("Bills").last(),
                 QString("%1 | 2026-03-15 | 1 | %2 | %3 | %4 | 1").arg(i + 1).arg(e.stored, e.name, e.note));
        QCOMPARE(w.rows("Purse"), QStringList{"1 | " + QString(e.state).replace(',', '.')});
        if (i == 0)
            screenshot(w.harness(), "main-window-after-expense.png");
    }
    QCOMPARE(w.balance(), QString("OSTATOK | NULL | 43439.37 | NULL"));
}

void MoneyWeekTest::cashBackToTheBank()
{
    MoneyWindowDriver& w = *m_w;
    w.click("O4");
    w.enter("T14", "1000");
    w.click("Command2");
    QCOMPARE(w.newBoxes(), QStringList{info("Сумма в размере 1000 снята с кошелька")});
    CHECK_FIELDS(w, {{"T1", ""}, {"T10", "2 439,37 р."}, {"T11", "41 000,00 р."}});
    QCOMPARE(w.rows("Purse"), QStringList{"1 | 2439.37"});
}

// A new name and a note; the code stays, so the expenses keep their purse.
void MoneyWeekTest::renameKeepsTheCode()
{
    MoneyWindowDriver& w = *m_w;
    w.openPurse(kCash);
    w.enter("T1", "Кошелёк 'семейный'");
    w.enter("T3", "на продукты");
    w.click("VC2");
    QCOMPARE(w.newBoxes(), QStringList{info("Изменеия успешно внесены")});
    QCOMPARE(w.harness().items("Combo1"), QStringList{"1 - Кошелёк 'семейный'"});
    CHECK_FIELDS(w, {{"T1", ""}, {"T3", ""}, {"Combo1", ""}});
    QCOMPARE(w.rows("Purse_Dict"), QStringList{"1 | Кошелёк 'семейный' | NULL | на продукты"});
    QCOMPARE(w.rows("Purse"), QStringList{"1 | 2439.37"});
    QCOMPARE(w.rows("Bills").first().section(" | ", 6), QString("1"));
}

// Its cash counts as the bank's again; its expenses stay.
void MoneyWeekTest::deleteAfterYes()
{
    MoneyWindowDriver& w = *m_w;
    w.openPurse("1 - Кошелёк 'семейный'");
    w.dialogs().answer(ui::DialogAnswer::Yes);
    w.click("VC3");
    const ShownBox question = w.dialogs().shown().at(w.dialogs().shown().size() - 2);
    QCOMPARE(question.buttons, ui::DialogButtons::YesNo);
    QCOMPARE(question.icon, ui::DialogIcon::Information);
    QCOMPARE(w.newBoxes(), QStringList({"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!",
                                        info("Кошелек успешно удален")}));
    QVERIFY(w.harness().items("Combo1").isEmpty());
    CHECK_FIELDS(w, {{"T1", ""}, {"T10", "0,00 р."}, {"T11", "43 439,37 р."}, {"S2", "1560,63"}});
    QVERIFY(w.rows("Purse_Dict").isEmpty());
    QVERIFY(w.rows("Purse").isEmpty());
    QCOMPARE(w.rows("Bills").size(), 3);
    QCOMPARE(w.balance(), QString("OSTATOK | NULL | 43439.37 | NULL"));
    QCOMPARE(w.rows("Bank").size(), 1);
}

QTEST_MAIN(MoneyWeekTest)
#include "MoneyWeekTest.moc"
