#include "ServiceWindowTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/MainWindow.h"
#include "app/SignInWindow.h"
#include "service/ui/ServiceWindow.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/Dates.h"
#include "store/Store.h"
#include "support/StoreCalls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

using namespace velmora::test;
namespace texts = service::texts;

namespace {

// Form2 of a running harness, reached through the main window's Сервис.
struct Form2
{
    GuiHarness& h;
    QWidget* window;

    QLineEdit* field(const char* name) const { return qobject_cast<QLineEdit*>(h.control(window, name)); }
    QComboBox* list(const char* name) const { return qobject_cast<QComboBox*>(h.control(window, name)); }
    QStringList items(const char* name) const
    {
        QStringList entries;
        for (int i = 0; i < list(name)->count(); ++i)
            entries.append(list(name)->itemText(i));
        return entries;
    }
    void click(const char* name) { h.click(window, name); }
    // The last box shown, as "title|text".
    QString lastBox() const
    {
        return h.dialogs.shown().isEmpty()
                   ? QString()
                   : h.dialogs.shown().last().title + "|" + h.dialogs.shown().last().text;
    }
};

Form2 openService(GuiHarness& h)
{
    h.click(h.frame().mainWindow(), "B2");
    return Form2{h, h.frame().serviceWindow()};
}

void writeData(const ProgramFolder& folder, const std::function<void(DataBuilder&)>& fill)
{
    DataBuilder data;
    fill(data);
    folder.write(data.database());
}

QString error(const char* text)
{
    return utf8("Ошибка|") + utf8(text);
}

QString information(const char* text)
{
    return utf8("Информация|") + utf8(text);
}

} // namespace

void ServiceWindowTest::opensFromTheMainWindowWithEveryControl()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.account(2, "Транспорт").account(1, "Питание"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QVERIFY(h.mainControl("B2")->isEnabled());
    Form2 f = openService(h);
    QVERIFY(f.window);
    QCOMPARE(f.window->objectName(), QString("Form2"));
    QCOMPARE(f.window->windowTitle(), utf8(texts::windowTitle));
    QCOMPARE(h.frame().mdiArea()->activeSubWindow()->widget(), f.window);
    const std::pair<const char*, const char*> captions[] = {{"Frame1", "Спасение"},
                                                            {"Frame2", "Счета"},
                                                            {"Frame3", "Перенос расходов на другой счет"},
                                                            {"Frame4", "Курсы"},
                                                            {"Frame5", "Удаление операций"},
                                                            {"Frame6", "Удаление операций по Банку"},
                                                            {"Frame7", "Удаление операций по Счетам"},
                                                            {"Frame8", "Дата операций"},
                                                            {"Frame9", "Очистить базу"},
                                                            {"Label1", "Курс USD"},
                                                            {"Label3", "Курс EUR"},
                                                            {"Label4", "Последнее спасение"},
                                                            {"Label5", "С какого счета переносить"},
                                                            {"Label6", "На какой счет"},
                                                            {"Label7", "N операции"},
                                                            {"Label8", "N операции"},
                                                            {"B1", "Закрыть"},
                                                            {"B2", "Пароль"},
                                                            {"B7", "Задать"},
                                                            {"C1", "Спасти"},
                                                            {"C2", "Восстановить"},
                                                            {"C3", "Операция"},
                                                            {"С12", "Выбрать"},
                                                            {"C14", "Удалить"},
                                                            {"C15", "Удалить"},
                                                            {"VC1A", "На редакцию"},
                                                            {"VC2A", "Сохранить"},
                                                            {"VC3A", "Удалить"},
                                                            {"VC4A", "Новый"}};
    for (const auto& [name, caption] : captions) {
        QWidget* control = h.control(f.window, name);
        const QString shown = qobject_cast<QGroupBox*>(control) ? qobject_cast<QGroupBox*>(control)->title()
                              : qobject_cast<QLabel*>(control)
                                  ? qobject_cast<QLabel*>(control)->text()
                                  : qobject_cast<QAbstractButton*>(control)->text();
        QCOMPARE(shown, utf8(caption));
    }
    QVERIFY(qobject_cast<QPushButton*>(h.control(f.window, "C16"))->text().isEmpty());
    QVERIFY(qobject_cast<QCheckBox*>(h.control(f.window, "Check1"))->text().isEmpty());
    QCOMPARE(f.field("T12")->text(), QString("15.03.2026"));
    QCOMPARE(f.field("T7")->text(), QString("0"));
    QCOMPARE(f.field("T8")->text(), QString("0"));
    for (const char* name : {"Combo1A", "Combo1B", "Combo1C"}) {
        QCOMPARE(f.items(name), QStringList({"1 - Питание", "2 - Транспорт"}));
        QCOMPARE(f.list(name)->currentText(), QString());
    }
    QVERIFY(f.items("Combo1").isEmpty() && f.items("Combo2").isEmpty());
    // The safety catch: C16 only while Check1 is ticked.
    QWidget* clear = h.control(f.window, "C16");
    QVERIFY(!clear->isEnabled());
    f.click("Check1");
    QVERIFY(clear->isEnabled());
    f.click("Check1");
    QVERIFY(!clear->isEnabled());
    // A second Сервис brings the same window forward; Закрыть closes it.
    h.frame().mdiArea()->setActiveSubWindow(
        qobject_cast<QMdiSubWindow*>(h.frame().mainWindow()->parentWidget()));
    QCOMPARE(openService(h).window, f.window);
    QCOMPARE(h.frame().mdiArea()->activeSubWindow()->widget(), f.window);
    f.click("B1");
    QTRY_VERIFY(!h.frame().serviceWindow());
    QVERIFY(h.frame().mainWindow());
    QVERIFY(h.dialogs.shown().isEmpty());
}

void ServiceWindowTest::lastBackupDateIsShownOnlyWhenThereIsOne()
{
    for (const bool dated : {true, false}) {
        ProgramFolder folder;
        writeData(folder, [dated](DataBuilder& d) {
            for (jet::Row& row : d.database().table(u"Tech")->rows)
                if (dated && row[0] == jet::Value(std::u16string(u"BACKUP")))
                    row[3] = store::toJetDate(QDate(2026, 2, 28));
        });
        GuiHarness h(folder);
        QVERIFY(h.start());
        QCOMPARE(openService(h).field("T1")->text(), dated ? QString("28.02.2026") : QString());
    }
}

// Codes that expenses or money still name are never handed out again, to
// accounts or to purses.
void ServiceWindowTest::newCodesFollowEveryCodeInUse()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) {
        d.account(1, "Питание").account(2, "Транспорт").account(5, "Отпуск").purse(1, "Наличные", "0");
        d.bill(QDate(2026, 3, 1), 9, "10", 4); // an account and a purse deleted since
    });
    GuiHarness h(folder);
    QVERIFY(h.start());
    h.dialogs.answerText("Карта");
    h.click(h.frame().mainWindow(), "VC4");
    QCOMPARE(h.items("Combo1"), QStringList({"1 - Наличные", "5 - Карта"}));
    Form2 f = openService(h);
    h.dialogs.answerText("Связь");
    f.click("VC4A");
    QCOMPARE(h.dialogs.asked().last().prompt, utf8(texts::newAccountPrompt));
    QCOMPARE(h.dialogs.asked().last().title, utf8(texts::newAccountTitle));
    QCOMPARE(h.dialogs.asked().last().initial, QString());
    QCOMPARE(f.lastBox(), information(texts::accountAdded));
    const QStringList expected{"1 - Питание", "2 - Транспорт", "5 - Отпуск", "10 - Связь"};
    for (const char* name : {"Combo1A", "Combo1B", "Combo1C"})
        QCOMPARE(f.items(name), expected);
    QCOMPARE(h.items("R2"), expected);
    // An empty answer or Cancel writes and shows nothing; a name too long for
    // the column is refused.
    const QByteArray before = folder.bytes();
    const qsizetype boxes = h.dialogs.shown().size();
    h.dialogs.answerText("");
    f.click("VC4A");
    f.click("VC4A");
    QCOMPARE(h.dialogs.shown().size(), boxes);
    h.dialogs.answerText(QString(256, u'ы'));
    f.click("VC4A");
    QCOMPARE(f.lastBox(), error("Наименование счета не может быть длиннее 255 символов!"));
    QCOMPARE(folder.bytes(), before);
}

void ServiceWindowTest::anAccountWithExpensesIsDeletedOnlyOnceTheyAreMoved()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) {
        d.account(3, "Питание").account(4, "Связь").account(5, "Отпуск");
        d.bill(QDate(2026, 3, 1), 3, "100").bill(QDate(2026, 3, 2), 4, "20").bill(QDate(2026, 3, 3), 4, "5");
    });
    GuiHarness h(folder);
    QVERIFY(h.start());
    Form2 f = openService(h);
    const QByteArray before = folder.bytes();
    f.list("Combo1A")->setCurrentIndex(1);
    f.click("VC1A");
    f.click("VC3A");
    QCOMPARE(f.lastBox(), error(texts::accountInUse).arg(2));
    QCOMPARE(folder.bytes(), before);
    QCOMPARE(h.items("R2"), QStringList({"3 - Питание", "4 - Связь", "5 - Отпуск"}));
    QVERIFY(f.list("Combo1A")->isEnabled());
    // The account is offered for moving its expenses away; then it goes.
    QCOMPARE(f.list("Combo1B")->currentText(), QString("4 - Связь"));
    f.list("Combo1C")->setCurrentIndex(2);
    h.dialogs.answer(ui::DialogAnswer::Yes);
    f.click("C3");
    QCOMPARE(f.lastBox(), information(texts::moveDone));
    f.list("Combo1A")->setCurrentIndex(1);
    f.click("VC1A");
    const qsizetype boxes = h.dialogs.shown().size();
    f.click("VC3A");
    QCOMPARE(h.dialogs.shown().size(), boxes + 1);
    QCOMPARE(f.lastBox(), information(texts::accountDeleted));
    QCOMPARE(h.items("R2"), QStringList({"3 - Питание", "5 - Отпуск"}));
    QCOMPARE(lookupValue(h.frame().store(), "Bills", "F2", "F0 = 3").toInt(), 5);
}

// Renaming, adding and deleting accounts refill the account lists of the main
// and analytics windows and leave the work going on there as it was.
void ServiceWindowTest::accountChangesKeepTheOtherWindowsWork()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) {
        d.account(3, "Питание").account(4, "Связь").purse(1, "Наличные", "100");
    });
    GuiHarness h(folder);
    QVERIFY(h.start());
    auto* main = h.frame().mainWindow();
    h.click(main, "B1");
    auto* analyticsAccounts = qobject_cast<QComboBox*>(h.control(h.frame().analyticsWindow(), "R2"));
    analyticsAccounts->setCurrentIndex(0);
    qobject_cast<QComboBox*>(h.mainControl("Combo1"))->setCurrentIndex(0);
    h.click(main, "VC1");
    qobject_cast<QComboBox*>(h.mainControl("R2"))->setCurrentIndex(0);
    for (const char* name : {"R1", "R3", "T14"})
        qobject_cast<QLineEdit*>(h.mainControl(name))->setText(name);
    Form2 f = openService(h);
    const auto check = [&](const QString& chosen, const QStringList& entries) {
        QCOMPARE(h.text("R2"), chosen);
        QCOMPARE(h.items("R2"), entries);
        QCOMPARE(analyticsAccounts->currentText(), chosen);
        QCOMPARE(QStringList({h.text("T1"), h.text("T4"), h.text("R1"), h.text("R3"), h.text("T14")}),
                 QStringList({"Наличные", "100", "R1", "R3", "T14"}));
        QVERIFY(!h.mainControl("Combo1")->isEnabled());
    };
    f.list("Combo1A")->setCurrentIndex(0);
    f.click("VC1A");
    f.field("T1A")->clear();
    // Quotes are kept; the field takes no more than the column holds.
    GuiHarness::type(f.field("T1A"), "Д'Артаньян \"и\" " + QString(300, u'ы'));
    f.click("VC2A");
    QCOMPARE(f.lastBox(), information(texts::changesSaved));
    QVERIFY(f.list("Combo1A")->isEnabled());
    QCOMPARE(f.field("T1A")->text(), QString());
    const QString renamed = "3 - Д'Артаньян \"и\" " + QString(240, u'ы');
    check(renamed, {renamed, "4 - Связь"});
    h.dialogs.answerText("Отпуск");
    f.click("VC4A");
    check(renamed, {renamed, "4 - Связь", "5 - Отпуск"});
    f.list("Combo1A")->setCurrentIndex(0);
    f.click("VC1A");
    f.click("VC3A");
    check("", {"4 - Связь", "5 - Отпуск"});
    QCOMPARE(analyticsAccounts->count(), 2);
}

void ServiceWindowTest::accountButtonsWithNothingChosen()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.account(1, "Питание"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    Form2 f = openService(h);
    const QByteArray before = folder.bytes();
    f.click("VC1A");
    QCOMPARE(f.lastBox(), error(texts::selectAccountToEdit));
    f.list("Combo1A")->setEditText("Питание");
    f.click("VC1A");
    QCOMPARE(f.lastBox(), error(texts::selectAccountToEdit));
    f.click("VC2A");
    QCOMPARE(f.lastBox(), error(texts::accountNameRequired));
    f.click("VC3A");
    QCOMPARE(f.lastBox(), error(texts::selectAccountToDelete));
    // A pasted text of endless " -" is no entry: the same messages, and the program goes on.
    const QString pasted = QStringLiteral(" -").repeated(12000);
    f.list("Combo1A")->setEditText(pasted);
    f.field("T1A")->setText("Питание");
    for (const auto& [button, message] : {std::pair{"VC1A", texts::selectAccountToEdit},
                                          {"VC2A", texts::selectAccountToEdit},
                                          {"VC3A", texts::selectAccountToDelete}}) {
        f.list("Combo1A")->setEditText(pasted);
        f.click(button);
        QCOMPARE(f.lastBox(), error(message));
    }
    f.list("Combo1B")->setEditText(pasted);
    f.list("Combo1C")->setEditText("1 - Питание");
    f.click("C3");
    QCOMPARE(f.lastBox(), error(texts::selectAccountsToMove));
    // Новый while an account is open leaves the list locked and the name empty;
    // saving then fails and unlocks the list.
    f.list("Combo1A")->setCurrentIndex(0);
    f.click("VC1A");
    f.click("VC4A");
    QVERIFY(!f.list("Combo1A")->isEnabled());
    QCOMPARE(f.field("T1A")->text(), QString());
    f.click("VC2A");
    QCOMPARE(f.lastBox(), error(texts::accountNameRequired));
    QVERIFY(f.list("Combo1A")->isEnabled());
    for (const ShownBox& box : h.dialogs.shown())
        QCOMPARE(box.icon, ui::DialogIcon::Information);
    QCOMPARE(folder.bytes(), before);
}

void ServiceWindowTest::passwordIsSetKeptOrRemovedAndHonouredAtTheNextSignIn()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder&) {});
    {
        GuiHarness h(folder);
        QVERIFY(h.start());
        Form2 f = openService(h);
        h.dialogs.answerText("Ключ'7");
        f.click("B2");
        QCOMPARE(h.dialogs.asked().last().prompt, utf8(texts::passwordPrompt));
        QCOMPARE(h.dialogs.asked().last().title, utf8(texts::passwordTitle));
        QCOMPARE(h.dialogs.asked().last().initial, QString());
        QCOMPARE(f.lastBox(), information(texts::passwordSet));
        // Cancel asks about removing; No keeps the password.
        f.click("B2");
        QCOMPARE(h.dialogs.asked().last().initial, QString("Ключ'7"));
        QCOMPARE(f.lastBox(), utf8("ВНИМАНИЕ!!!|") + utf8(texts::removePasswordQuestion));
        QCOMPARE(h.dialogs.shown().last().buttons, ui::DialogButtons::YesNo);
        QCOMPARE(lookupValue(h.frame().store(), "Tech", "F1", "F0 = 'PW'").toString(), QString("Ключ'7"));
    }
    {
        GuiHarness h(folder);
        QVERIFY(h.start());
        QVERIFY(h.frame().signInWindow());
        GuiHarness::type(h.control(h.frame().signInWindow(), "T1"), "Ключ'7");
        h.click(h.frame().signInWindow(), "Command1");
        QTRY_VERIFY(h.frame().mainWindow());
        Form2 f = openService(h);
        h.dialogs.answerText("");
        h.dialogs.answer(ui::DialogAnswer::Yes);
        f.click("B2");
        QCOMPARE(f.lastBox(), information(texts::passwordRemoved));
    }
    GuiHarness h(folder);
    QVERIFY(h.start());
    QVERIFY(!h.frame().signInWindow());
    QVERIFY(h.frame().mainWindow());
}

void ServiceWindowTest::ratesAreCheckedRoundedAndShownBack_data()
{
    QTest::addColumn<QString>("usd");
    QTest::addColumn<QString>("eur");
    QTest::addColumn<QStringList>("shown"); // T7, T8 afterwards; empty when refused
    QTest::newRow("comma, rounded half up") << "28,4567"
                                            << "91.505" << QStringList{"28,46", "91,51"};
    QTest::newRow("negative and whole") << "-1,5"
                                        << "100" << QStringList{"-1,5", "100"};
    QTest::newRow("letters") << "28,45"
                             << "abc" << QStringList{};
    QTest::newRow("empty") << ""
                           << "91" << QStringList{};
    QTest::newRow("two commas") << "1,2,3"
                                << "91" << QStringList{};
}

void ServiceWindowTest::ratesAreCheckedRoundedAndShownBack()
{
    QFETCH(QString, usd);
    QFETCH(QString, eur);
    QFETCH(QStringList, shown);
    ProgramFolder folder;
    writeData(folder, [](DataBuilder&) {});
    GuiHarness h(folder);
    QVERIFY(h.start());
    Form2 f = openService(h);
    const QByteArray before = folder.bytes();
    f.field("T7")->setText(usd);
    f.field("T8")->setText(eur);
    f.click("B7");
    if (shown.isEmpty()) {
        QCOMPARE(f.lastBox(), error(texts::mustBeNumber));
        QCOMPARE(folder.bytes(), before);
        return;
    }
    QCOMPARE(f.lastBox(), information(texts::ratesUpdated));
    QCOMPARE(QStringList({f.field("T7")->text(), f.field("T8")->text()}), shown);
    store::Store check(folder.path());
    QCOMPARE(store::Amount::fromStored(lookupValue(check, "Cur", "F1", "F0 = 2")).toDisplayString(),
             shown[0]);
}

QTEST_MAIN(ServiceWindowTest)
