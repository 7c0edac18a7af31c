// The service window: each handler as a row (data file, clicks and answers,
// the boxes it shows, whether the file stays as it was, what the windows show
// afterwards), then what spans windows: backup and restore, the password at
// the next start, account changes reaching the main and analytics windows.
#include "service/ui/ServiceWindow.h"
#include "WindowDriver.h"
#include "app/MainWindow.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/Dates.h"
#include "store/Schema.h"
#include "support/StoreCalls.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

#include <functional>

using namespace velmora::test;
namespace texts = service::texts;

using Fill = std::function<void(DataBuilder&)>;
using Act = std::function<void(WindowDriver&, const Form&)>;
Q_DECLARE_METATYPE(Fill)
Q_DECLARE_METATYPE(Act)

namespace {

QString attention(const QString& text)
{
    return "ВНИМАНИЕ!!!: " + text;
}
QString information(const char* text)
{
    return "Информация: " + utf8(text);
}
QString error(const char* text)
{
    return "Ошибка: " + utf8(text);
}

QString backupPath(WindowDriver& w)
{
    return QDir(w.folder().path()).filePath(store::kBackupFileName);
}

void yes(WindowDriver& w)
{
    w.dialogs.answer(ui::DialogAnswer::Yes);
}

void accounts(DataBuilder& d)
{
    d.account(3, "Питание").account(4, "Связь").account(5, "Отпуск");
    d.bill(QDate(2026, 3, 1), 3, "100").bill(QDate(2026, 3, 2), 4, "20").bill(QDate(2026, 3, 3), 4, "5");
}

void operations(DataBuilder& d)
{
    d.balance("700")
        .account(3, "Питание")
        .purse(1, "Наличные", "10")
        .bank(QDate(2005, 11, 6), "1000", "Зарплата");
    d.bank(QDate(2005, 11, 6), "-300", "Снятие").bank(QDate(2005, 11, 7), "5");
    d.bill(QDate(2005, 11, 6), 3, "150,25");
}

QStringList billAccounts(WindowDriver& w)
{
    QStringList codes;
    for (const QString& row : w.rows("Bills"))
        codes.append(row.section(" | ", 2, 2));
    return codes;
}

} // namespace

class ServiceWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void opensFromTheMainWindow();
    void handlers_data();
    void handlers();
    void backupThenRestoreEndsTheProgramOnTheBackup();
    void accountChangesKeepTheOtherWindowsWork();
};

void ServiceWindowTest::opensFromTheMainWindow()
{
    DataBuilder data;
    data.account(2, "Транспорт").account(1, "Питание");
    for (jet::Row& row : data.database().table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"BACKUP")))
            row[3] = store::toJetDate(QDate(2026, 2, 28));
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form f = w.service();
    QCOMPARE(f.widget()->windowTitle(), utf8(texts::windowTitle));
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), f.widget());
    QCOMPARE(QStringList({f.text("T1"), f.text("T12"), f.text("T7"), f.text("T8")}),
             QStringList({"28.02.2026", "15.03.2026", "0", "0"}));
    for (const char* name : {"Combo1A", "Combo1B", "Combo1C"})
        QVERIFY2(f.items(name) == QStringList({"1 - Питание", "2 - Транспорт"}) && f.text(name).isEmpty(),
                 name);
    // The safety catch: C16 only while Check1 is ticked.
    QVERIFY(!f.enabled("C16"));
    f.click("Check1");
    QVERIFY(f.enabled("C16"));
    // A second Сервис brings the same window forward; Закрыть closes it.
    w.frame().mdiArea()->setActiveSubWindow(
        qobject_cast<QMdiSubWindow*>(w.frame().mainWindow()->parentWidget()));
    w.main().click("B2");
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), f.widget());
    f.click("B1");
    QTRY_VERIFY(!w.frame().serviceWindow());
    QVERIFY(w.frame().mainWindow() && w.dialogs.shown().isEmpty());
}

void ServiceWindowTest::handlers_data()
{
    QTest::addColumn<Fill>("fill");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QStringList>("boxes"); // each box's beginning, in order
    QTest::addColumn<bool>("unchanged");
    QTest::addColumn<Act>("check");
    const Act nothing = [](WindowDriver&, const Form&) {};
    const Fill none = [](DataBuilder&) {};

    QTest::newRow("a new account takes the code after every code in use") << Fill([](DataBuilder& d) {
        d.account(1, "Питание").account(5, "Отпуск").bill(QDate(2026, 3, 1), 9, "10", 4);
    }) << Act([](WindowDriver& w, const Form& f) {
        w.dialogs.answerText("Связь");
        f.click("VC4A");
    }) << QStringList{information(texts::accountAdded)} << false << Act([](WindowDriver& w, const Form& f) {
        const QStringList expected{"1 - Питание", "5 - Отпуск", "10 - Связь"};
        for (const char* name : {"Combo1A", "Combo1B", "Combo1C"})
            QVERIFY2(f.items(name) == expected, name);
        QCOMPARE(w.main().items("R2"), expected);
        QCOMPARE(w.dialogs.asked().last().title, utf8(texts::newAccountTitle));
    });
    QTest::newRow("a new account: no name, Cancel, a name too long")
        << none << Act([](WindowDriver& w, const Form& f) {
               w.dialogs.answerText("");
               f.click("VC4A");
               f.click("VC4A");
               w.dialogs.answerText(QString(256, u'ы'));
               f.click("VC4A");
           })
        << QStringList{"Ошибка: Наименование счета не может быть длиннее 255 символов!"} << true << nothing;
    QTest::newRow("an account with expenses stays")
        << Fill(accounts) << Act([](WindowDriver&, const Form& f) {
               f.choose("Combo1A", "4 - Связь");
               f.click("VC1A");
               f.click("VC3A");
           })
        << QStringList{error(texts::accountInUse).arg(2)} << true << Act([](WindowDriver&, const Form& f) {
               // It is offered for moving its expenses away.
               QCOMPARE(f.text("Combo1B"), QString("4 - Связь"));
               QVERIFY(f.enabled("Combo1A"));
           });
    QTest::newRow("its expenses moved, the account goes")
        << Fill(accounts) << Act([](WindowDriver& w, const Form& f) {
               f.choose("Combo1B", "4 - Связь");
               f.choose("Combo1C", "5 - Отпуск");
               yes(w);
               f.click("C3");
               f.choose("Combo1A", "4 - Связь");
               f.click("VC1A");
               f.click("VC3A");
           })
        << QStringList{attention(
                           "Подтвердите перенос расходов\r\nсо счета: 4 - Связь\r\n на счет: 5 - Отпуск"),
                       information(texts::moveDone), information(texts::accountDeleted)}
        << false << Act([](WindowDriver& w, const Form&) {
               QCOMPARE(w.main().items("R2"), QStringList({"3 - Питание", "5 - Отпуск"}));
               QCOMPARE(billAccounts(w), QStringList({"3", "5", "5"}));
           });
    QTest::newRow("account buttons with nothing chosen")
        << Fill(accounts) << Act([](WindowDriver&, const Form& f) {
               for (const char* button : {"VC1A", "VC2A", "VC3A", "C3"})
                   f.click(button);
               // A pasted text of endless " -" is no entry.
               f.list("Combo1A")->setEditText(QStringLiteral(" -").repeated(12000));
               f.field("T1A")->setText("Питание");
               f.click("VC2A");
               // Новый while an account is open leaves the name empty; saving unlocks the list.
               f.choose("Combo1A", "3 - Питание");
               f.click("VC1A");
               f.click("VC4A");
               QVERIFY(!f.enabled("Combo1A"));
               f.click("VC2A");
               QVERIFY(f.enabled("Combo1A"));
           })
        << QStringList{error(texts::selectAccountToEdit),   error(texts::accountNameRequired),
                       error(texts::selectAccountToDelete), error(texts::selectAccountsToMove),
                       error(texts::selectAccountToEdit),   error(texts::accountNameRequired)}
        << true << nothing;
    QTest::newRow("a password set, then kept after Cancel and No")
        << none << Act([](WindowDriver& w, const Form& f) {
               w.dialogs.answerText("Ключ'7");
               f.click("B2");
               f.click("B2");
           })
        << QStringList{information(texts::passwordSet), attention(utf8(texts::removePasswordQuestion))}
        << false << Act([](WindowDriver& w, const Form&) {
               QCOMPARE(w.dialogs.asked().last().initial, QString("Ключ'7"));
               QCOMPARE(lookupValue(w.frame().store(), "Tech", "F1", "F0 = 'PW'").toString(),
                        QString("Ключ'7"));
           });
    QTest::newRow("rates rounded and shown back")
        << none << Act([](WindowDriver&, const Form& f) {
               f.field("T7")->setText("28,4567");
               f.field("T8")->setText("91.505");
               f.click("B7");
           })
        << QStringList{information(texts::ratesUpdated)} << false << Act([](WindowDriver& w, const Form& f) {
               QCOMPARE(QStringList({f.text("T7"), f.text("T8")}), QStringList({"28,46", "91,51"}));
               QCOMPARE(w.rows("Cur").filter(" | 28.46").size() + w.rows("Cur").filter(" | 91.51").size(), 2);
           });
    QTest::newRow("a rate that is no number") << none << Act([](WindowDriver&, const Form& f) {
        f.field("T8")->setText("abc");
        f.click("B7");
    }) << QStringList{error(texts::mustBeNumber)}
                                              << true << nothing;
    QTest::newRow("restore without a backup") << none << Act([](WindowDriver& w, const Form& f) {
        yes(w);
        f.click("C2");
    })
                                              << QStringList{attention(utf8(texts::restoreQuestion)),
                                                             error(texts::backupMissing).section("%1", 0, 0)}
                                              << true << nothing;
    QTest::newRow("every question answered No")
        << Fill(operations) << Act([](WindowDriver& w, const Form& f) {
               writeBytes(backupPath(w), "прежняя копия");
               f.field("T12")->setText("06.11.2005");
               f.click("С12");
               f.list("Combo1")->setCurrentIndex(0);
               f.list("Combo2")->setCurrentIndex(0);
               f.list("Combo1B")->setCurrentIndex(0);
               f.list("Combo1C")->setCurrentIndex(0);
               f.click("Check1");
               for (const char* button : {"C1", "C2", "C16", "C14", "C15", "C3"})
                   f.click(button);
           })
        << QStringList(6, "ВНИМАНИЕ!!!: ") << true << Act([](WindowDriver& w, const Form& f) {
               QCOMPARE(contents(backupPath(w)), QByteArray("прежняя копия"));
               QCOMPARE(f.text("Combo1"), QString("2"));
               QVERIFY(w.quitCodes.isEmpty());
           });
    QTest::newRow("clearing empties the main window")
        << Fill(operations) << Act([](WindowDriver& w, const Form& f) {
               yes(w);
               f.click("C1");
               f.click("Check1");
               yes(w);
               f.click("C16");
           })
        << QStringList{attention(utf8(texts::backupQuestion)), information(texts::backupDone),
                       attention(utf8(texts::clearQuestion)), information(texts::cleared)}
        << false << Act([](WindowDriver& w, const Form& f) {
               const Form main = w.main();
               QCOMPARE(QStringList({main.text("T10"), main.text("T11"), main.text("S1"), main.text("S2")}),
                        QStringList({"0,00 р.", "0,00 р.", "0", "0"}));
               QVERIFY(main.items("Combo1").isEmpty() && w.rows("Bank").isEmpty());
               // The window keeps the last backup's date on screen; the file has forgotten it.
               QCOMPARE(f.text("T1"), QString("15.03.2026"));
               QVERIFY(!lookupValue(w.frame().store(), "Tech", "F3", "F0 = 'BACKUP'").isValid());
           });
    QTest::newRow("deleting a bank operation")
        << Fill(operations) << Act([](WindowDriver& w, const Form& f) {
               f.field("T12")->setText("06.11.2005");
               QTest::keyClick(f.field("T12"), Qt::Key_Return);
               QCOMPARE(f.items("Combo1"), QStringList({"2", "1"}));
               f.list("Combo1")->setCurrentIndex(0);
               yes(w);
               f.click("C14");
               // A number typed by hand from another day is deleted all the same.
               Form::type(f.list("Combo1")->lineEdit(), "3");
               yes(w);
               f.click("C14");
           })
        << QStringList{attention(utf8(texts::confirmBankDeletion) +
                                 "\r\n\r\nОПЕРАЦИЯ N 2, НА СУММУ: -300\r\nНАИМЕНОВАНИЕ: Снятие"),
                       information(texts::operationDeleted).arg(2),
                       attention(utf8(texts::confirmBankDeletion)),
                       information(texts::operationDeleted).arg(3)}
        << false << Act([](WindowDriver& w, const Form& f) {
               QCOMPARE(w.main().text("T11"), QString("985,00 р."));
               QCOMPARE(f.items("Combo1"), QStringList({"1"}));
               QCOMPARE(w.rows("Bank").size(), 1);
           });
    QTest::newRow("deleting an expense gives the money back")
        << Fill(operations) << Act([](WindowDriver& w, const Form& f) {
               f.field("T12")->setText("06.11.2005");
               f.click("С12");
               f.list("Combo2")->setCurrentIndex(0);
               yes(w);
               f.click("C15");
           })
        << QStringList{attention(utf8(texts::confirmBillDeletion) +
                                 "\r\n\r\nОПЕРАЦИЯ N 1, НА СУММУ: 150,25\r\nНАИМЕНОВАНИЕ: покупка"),
                       information(texts::operationDeleted).arg(1)}
        << false << Act([](WindowDriver& w, const Form& f) {
               QCOMPARE(QStringList({w.main().text("T10"), w.main().text("T11")}),
                        QStringList({"160,25 р.", "690,00 р."}));
               QVERIFY(f.items("Combo2").isEmpty());
           });
    QTest::newRow("deleting what is not an operation")
        << Fill(operations) << Act([](WindowDriver&, const Form& f) {
               f.click("C14");
               f.field("T12")->setText("06.11.2005");
               f.click("С12");
               for (const char* typed : {"9", "abc", "-1", "1.0"}) {
                   f.list("Combo1")->setEditText(typed);
                   f.click("C14");
               }
               f.list("Combo2")->setEditText("2");
               f.click("C15");
               // A date that is not one keeps the lists as they were.
               f.field("T12")->setText("31.02.2026");
               f.click("С12");
               QCOMPARE(f.items("Combo1"), QStringList({"2", "1"}));
           })
        << QStringList(6, error(texts::selectOperation)) + QStringList{error(texts::invalidOperationDate)}
        << true << nothing;
}

void ServiceWindowTest::handlers()
{
    QFETCH(Fill, fill);
    QFETCH(Act, act);
    QFETCH(QStringList, boxes);
    QFETCH(bool, unchanged);
    QFETCH(Act, check);
    DataBuilder data;
    fill(data);
    WindowDriver w(data);
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    const Form f = w.service();
    act(w, f);
    const QStringList shown = w.newBoxes();
    QVERIFY2(shown.size() == boxes.size(), qPrintable(shown.join("\n")));
    for (int i = 0; i < boxes.size(); ++i)
        QVERIFY2(shown[i].startsWith(boxes[i]), qPrintable(shown[i] + "\nis not\n" + boxes[i]));
    QCOMPARE(w.bytes() == before, unchanged);
    check(w, f);
}

void ServiceWindowTest::backupThenRestoreEndsTheProgramOnTheBackup()
{
    DataBuilder data;
    data.balance("1000").account(1, "Питание");
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form f = w.service();
    yes(w);
    f.click("C1");
    QCOMPARE(w.newBoxes(), QStringList({attention(utf8(texts::backupQuestion)),
                                        information(texts::backupDone) + backupPath(w)}));
    QCOMPARE(contents(backupPath(w)), w.bytes());
    const QByteArray backup = w.bytes();
    // Work after the backup.
    w.dialogs.answerText("Связь");
    f.click("VC4A");
    QVERIFY(w.bytes() != backup);
    yes(w);
    f.click("C2");
    QCOMPARE(w.newBoxes().mid(1),
             QStringList({attention(utf8(texts::restoreQuestion)),
                          information(texts::restoreDone) + "15.03.2026" + utf8(texts::restoreSignInAgain)}));
    QCOMPARE(f.items("Combo1A"), QStringList({"1 - Питание"}));
    QCOMPARE(w.quitCodes, QList<int>({0}));
    QVERIFY(!w.frame().isVisible());
    QCOMPARE(w.bytes(), backup);
}

// Renaming, adding and deleting accounts refill the account lists of the main
// and analytics windows and leave the work going on there as it was.
void ServiceWindowTest::accountChangesKeepTheOtherWindowsWork()
{
    DataBuilder data;
    data.account(3, "Питание").account(4, "Связь").purse(1, "Наличные", "100");
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form main = w.main();
    const Form analytics = w.analytics();
    analytics.list("R2")->setCurrentIndex(0);
    main.choose("Combo1", "1 - Наличные");
    main.click("VC1");
    main.list("R2")->setCurrentIndex(0);
    main.field("R1")->setText("12");
    const Form f = w.service();
    const auto check = [&](const QString& chosen, const QStringList& entries) {
        QCOMPARE(main.text("R2"), chosen);
        QCOMPARE(main.items("R2"), entries);
        QCOMPARE(analytics.text("R2"), chosen);
        QCOMPARE(QStringList({main.text("T1"), main.text("R1")}), QStringList({"Наличные", "12"}));
    };
    f.choose("Combo1A", "3 - Питание");
    f.click("VC1A");
    // Quotes are kept; the field takes no more than the column holds.
    f.enter("T1A", "Д'Артаньян \"и\" " + QString(300, u'ы'));
    f.click("VC2A");
    QCOMPARE(w.newBoxes(), QStringList{information(texts::changesSaved)});
    const QString renamed = "3 - Д'Артаньян \"и\" " + QString(240, u'ы');
    check(renamed, {renamed, "4 - Связь"});
    w.dialogs.answerText("Отпуск");
    f.click("VC4A");
    check(renamed, {renamed, "4 - Связь", "5 - Отпуск"});
    f.list("Combo1A")->setCurrentIndex(0);
    f.click("VC1A");
    f.click("VC3A");
    check("", {"4 - Связь", "5 - Отпуск"});
    QCOMPARE(analytics.items("R2").size(), 2);
}

QTEST_MAIN(ServiceWindowTest)
#include "ServiceWindowTest.moc"
