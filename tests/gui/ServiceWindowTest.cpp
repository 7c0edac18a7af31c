// The service window: its handlers on one file after another (the boxes they
// show in order, whether the file was written, what the windows show
// afterwards), and account changes reaching the main and analytics windows.
#include "service/ui/ServiceWindow.h"
#include "WindowDriver.h"
#include "app/MainWindow.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/Dates.h"
#include "store/Schema.h"

#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

using namespace velmora::test;
namespace texts = service::texts;

namespace {

// A box as WindowDriver gives it: "title: text".
const auto attention = [](const QString& text) { return "ВНИМАНИЕ!!!: " + text; };
const auto information = [](const char* text) { return "Информация: " + utf8(text); };
const auto error = [](const char* text) { return "Ошибка: " + utf8(text); };

} // namespace

class ServiceWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void accountsPasswordAndRates();
    void operationsBackupClearingAndRestore();
};

void ServiceWindowTest::accountsPasswordAndRates()
{
    DataBuilder data;
    data.account(3, "Питание").account(4, "Связь").account(5, "Отпуск").bill(QDate(2026, 3, 1), 3, "100");
    data.bill(QDate(2026, 3, 2), 4, "20").bill(QDate(2026, 3, 3), 4, "5").bill(QDate(2026, 3, 4), 9, "1");
    for (jet::Row& row : data.database().table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"BACKUP")))
            row[3] = store::toJetDate(QDate(2026, 2, 28));
    data.purse(1, "Наличные", "100");
    WindowDriver w(data);
    QVERIFY(w.start());
    // Work going on in the main and analytics windows stays as it was while
    // their account lists follow every change.
    const Form main = w.main();
    const Form analytics = w.analytics();
    w.act(main, "Combo1=1 - Наличные|VC1|R1=12|R2=5 - Отпуск");
    analytics.choose("R2", "5 - Отпуск");
    const auto kept = [&](const QString& chosen, const QStringList& entries) {
        QCOMPARE(QStringList({main.text("R2"), analytics.text("R2"), main.text("T1"), main.text("R1")}),
                 QStringList({chosen, chosen, "Наличные", "12"}));
        QVERIFY(main.items("R2") == entries && analytics.items("R2") == entries);
    };
    const Form f = w.service();
    // Opened in front with the last backup's date, today, the rates and no account chosen.
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), f.widget());
    QCOMPARE(f.texts({"T1", "T12", "T7", "Combo1A", "Combo1C"}),
             QStringList({"28.02.2026", "15.03.2026", "0", "", ""}));
    QCOMPARE(f.items("Combo1B").first(), QString("3 - Питание"));
    // A second Сервис brings the same window forward.
    w.frame().mdiArea()->setActiveSubWindow(
        qobject_cast<QMdiSubWindow*>(w.frame().mainWindow()->parentWidget()));
    w.main().click("B2");
    QCOMPARE(w.frame().mdiArea()->activeSubWindow()->widget(), f.widget());
    w.act(f, "VC1A|VC2A|VC3A|C3");
    w.act(f, "Combo1A=Питание|T1A=Питание|VC2A");
    // Новый while an account is open leaves the name empty; saving unlocks the list.
    w.act(f, "Combo1A=3 - Питание|VC1A|VC4A");
    QVERIFY(!f.enabled("Combo1A"));
    f.click("VC2A");
    QVERIFY(f.enabled("Combo1A"));
    w.dialogs.answerText("");
    f.click("VC4A");
    w.expect({error(texts::selectAccountToEdit), error(texts::accountNameRequired),
              error(texts::selectAccountToDelete), error(texts::selectAccountsToMove),
              error(texts::selectAccountToEdit), error(texts::accountNameRequired)},
             false);
    // An account with expenses stays and is offered for moving them away.
    w.act(f, "Combo1A=4 - Связь|VC1A|VC3A");
    w.expect({error(texts::accountInUse).arg(2)}, false);
    QCOMPARE(f.text("Combo1B"), QString("4 - Связь"));
    w.act(f, "Combo1C=5 - Отпуск|yes|C3|Combo1A=4 - Связь|VC1A|VC3A");
    w.expect({attention("Подтвердите перенос расходов\r\nсо счета: 4 - Связь\r\n на счет: 5 - Отпуск"),
              information(texts::moveDone), information(texts::accountDeleted)},
             true);
    kept("5 - Отпуск", {"3 - Питание", "5 - Отпуск"});
    // A new account takes the code after every code in use, the expenses' included.
    w.dialogs.answerText("Связь");
    f.click("VC4A");
    w.expect({information(texts::accountAdded)}, true);
    QVERIFY(w.dialogs.asked().last().startsWith(utf8(texts::newAccountTitle)));
    const QStringList entries{"3 - Питание", "5 - Отпуск", "10 - Связь"};
    for (const char* name : {"Combo1A", "Combo1B", "Combo1C"})
        QVERIFY2(f.items(name) == entries, name);
    kept("5 - Отпуск", entries);
    // A new name, no longer than the column holds, and a deletion.
    w.act(f, "Combo1A=5 - Отпуск|VC1A|T1A=Д'Артаньян " + QString(300, u'ы') +
                 "|VC2A|Combo1A=10 - Связь|VC1A|VC3A");
    w.expect({information(texts::changesSaved), information(texts::accountDeleted)}, true);
    QVERIFY(f.enabled("Combo1A")); // the list the opened account locked is free again
    const QString renamed = "5 - Д'Артаньян " + QString(244, u'ы');
    kept(renamed, {"3 - Питание", renamed});
    // The password box offers the one in use; Cancel, then No, keeps it.
    w.dialogs.answerText("Ключ'7");
    w.act(f, "B2|B2");
    w.expect({information(texts::passwordSet), attention(utf8(texts::removePasswordQuestion))}, true);
    QVERIFY(w.dialogs.asked().last().endsWith("[Ключ'7]"));
    w.act(f, "T8=abc|B7|T7=28,4567|T8=91.505|B7");
    w.expect({error(texts::mustBeNumber), information(texts::ratesUpdated)}, true);
    QCOMPARE(f.texts({"T7", "T8"}), QStringList({"28,46", "91,51"}));
    w.act(f, "yes|C2");
    w.expect({attention(utf8(texts::restoreQuestion)), error(texts::backupMissing).section("%1", 0, 0)},
             false);
}

void ServiceWindowTest::operationsBackupClearingAndRestore()
{
    DataBuilder data;
    data.balance("700").account(3, "Питание").purse(1, "Наличные", "10");
    data.bank(QDate(2005, 11, 6), "1000", "Зарплата").bank(QDate(2005, 11, 6), "-300", "Снятие");
    data.bank(QDate(2005, 11, 7), "5").bill(QDate(2005, 11, 6), 3, "150,25").bill(QDate(2005, 11, 6), 3, "1");
    data.bank(QDateTime(QDate(2005, 11, 6), QTime(12, 30)), "1"); // not of the day itself
    WindowDriver w(data);
    QVERIFY(w.start());
    const Form f = w.service();
    const QString backupPath = QDir(w.folder().path()).filePath(store::kBackupFileName);
    w.act(f, "C14|T12=06.11.2005");
    QTest::keyClick(f.field("T12"), Qt::Key_Return);
    QCOMPARE(f.items("Combo1") + f.items("Combo2"), QStringList({"2", "1", "2", "1"})); // newest first
    w.act(f, "Combo1=9|C14|Combo1=abc|C14|Combo2=3|C15");
    // A date that is not one keeps the lists as they were.
    w.act(f, "T12=31.02.2026|С12");
    QCOMPARE(f.items("Combo1"), QStringList({"2", "1"}));
    w.expect(QStringList(4, error(texts::selectOperation)) << error(texts::invalidOperationDate), false);
    f.field("T12")->setText("06.11.2005");
    // Every question answered No.
    writeBytes(backupPath, "прежняя копия");
    for (const char* list : {"Combo1", "Combo2", "Combo1B", "Combo1C"})
        f.list(list)->setCurrentIndex(0);
    // The safety catch: C16 only while Check1 is ticked.
    QVERIFY(!f.enabled("C16"));
    f.click("Check1");
    QVERIFY(f.enabled("C16"));
    w.act(f, "C1|C2|C16|C14|C15|C3");
    w.expect(QStringList(6, "ВНИМАНИЕ!!!: "), false);
    QCOMPARE(contents(backupPath), QByteArray("прежняя копия"));
    w.act(f, "Combo1=2|yes|C14");
    // A number typed by hand from another day is deleted all the same.
    Form::type(f.list("Combo1")->lineEdit(), "3");
    w.act(f, "yes|C14|Combo2=1|yes|C15");
    w.expect({attention(utf8(texts::confirmBankDeletion) +
                        "\r\n\r\nОПЕРАЦИЯ N 2, НА СУММУ: -300\r\nНАИМЕНОВАНИЕ: Снятие"),
              information(texts::operationDeleted).arg(2), attention(utf8(texts::confirmBankDeletion)),
              information(texts::operationDeleted).arg(3),
              attention(utf8(texts::confirmBillDeletion) +
                        "\r\n\r\nОПЕРАЦИЯ N 1, НА СУММУ: 150,25\r\nНАИМЕНОВАНИЕ: покупка"),
              information(texts::operationDeleted).arg(1)},
             true);
    QCOMPARE(f.items("Combo1") + f.items("Combo2"), QStringList({"1", "2"}));
    QCOMPARE(w.main().texts({"T10", "T11"}), QStringList({"160,25 р.", "985,00 р."}));
    w.act(f, "yes|C1");
    w.expect({attention(utf8(texts::backupQuestion)), information(texts::backupDone) + backupPath}, true);
    const QByteArray backup = w.bytes();
    QCOMPARE(contents(backupPath), backup);
    w.act(f, "yes|C16");
    w.expect({attention(utf8(texts::clearQuestion)), information(texts::cleared)}, true);
    const Form main = w.main();
    QCOMPARE(main.texts({"T10", "T11", "S1", "S2"}), QStringList({"0,00 р.", "0,00 р.", "0", "0"}));
    QVERIFY(main.items("Combo1").isEmpty());
    // The restore brings the backup back and ends the program.
    w.act(f, "yes|C2");
    w.expect({attention(utf8(texts::restoreQuestion)),
              information(texts::restoreDone) + "15.03.2026" + utf8(texts::restoreSignInAgain)},
             true);
    QCOMPARE(f.items("Combo1A"), QStringList({"3 - Питание"}));
    QCOMPARE(w.quitCodes, QList<int>({0}));
    QVERIFY(!w.frame().isVisible());
    QCOMPARE(w.bytes(), backup);
}

QTEST_MAIN(ServiceWindowTest)
#include "ServiceWindowTest.moc"
