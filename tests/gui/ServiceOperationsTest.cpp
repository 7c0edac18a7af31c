#include "ServiceOperationsTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "app/MainWindow.h"
#include "app/SignInWindow.h"
#include "jet/Writer.h"
#include "service/ui/ServiceWindow.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/Schema.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "support/StoreCalls.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include <functional>

using namespace velmora::test;
namespace texts = service::texts;

namespace {

using Fill = std::function<void(DataBuilder&)>;

// The program on a data folder, with Form2 opened by the main window's Сервис.
struct Program
{
    explicit Program(const Fill& fill)
    {
        DataBuilder data;
        fill(data);
        folder.write(data.database());
        h = std::make_unique<GuiHarness>(folder);
        if (h->start() && h->frame().mainWindow())
            h->click(h->frame().mainWindow(), "B2");
        window = h->frame().serviceWindow();
    }

    QLineEdit* field(const char* name) const { return qobject_cast<QLineEdit*>(h->control(window, name)); }
    QComboBox* list(const char* name) const { return qobject_cast<QComboBox*>(h->control(window, name)); }
    QStringList items(const char* name) const
    {
        QStringList entries;
        for (int i = 0; i < list(name)->count(); ++i)
            entries.append(list(name)->itemText(i));
        return entries;
    }
    void click(const char* name) { h->click(window, name); }
    void yes() { h->dialogs.answer(ui::DialogAnswer::Yes); }
    // The boxes shown so far as "title|text".
    QStringList boxes() const
    {
        QStringList shown;
        for (const ShownBox& box : h->dialogs.shown())
            shown.append(box.title + "|" + box.text);
        return shown;
    }
    QString backupPath() const { return QDir(folder.path()).filePath(store::kBackupFileName); }

    ProgramFolder folder;
    std::unique_ptr<GuiHarness> h;
    QWidget* window = nullptr;
};

QString attention(const QString& text)
{
    return utf8("ВНИМАНИЕ!!!|") + text;
}
QString information(const QString& text)
{
    return utf8("Информация|") + text;
}
QString error(const QString& text)
{
    return utf8("Ошибка|") + text;
}

} // namespace

void ServiceOperationsTest::backupThenRestoreBringsBackTheBackupAndEndsTheProgram()
{
    Program p([](DataBuilder& d) { d.balance("1000").account(1, "Питание"); });
    p.yes();
    p.click("C1");
    QCOMPARE(p.field("T1")->text(), QString("15.03.2026"));
    QCOMPARE(p.boxes(), QStringList({attention(utf8(texts::backupQuestion)),
                                     information(utf8(texts::backupDone) + p.backupPath())}));
    QCOMPARE(contents(p.backupPath()), p.folder.bytes());
    {
        // Work after the backup: an operation and a new account.
        store::Transaction tx(p.h->frame().store());
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES ('2026-03-16', 5000000, 'после')");
        tx.execute("INSERT INTO Bills_Dict (F0, F1) VALUES (2, 'Связь')");
        tx.execute("UPDATE Tech SET F3 = '2026-03-17' WHERE F0 = 'BACKUP'");
        QVERIFY(tx.commit());
    }
    p.yes();
    p.click("C2");
    QCOMPARE(p.boxes().mid(2), QStringList({attention(utf8(texts::restoreQuestion)),
                                            information(utf8(texts::restoreDone) + "15.03.2026" +
                                                        utf8(texts::restoreSignInAgain))}));
    QCOMPARE(p.field("T1")->text(), QString("15.03.2026"));
    QCOMPARE(p.items("Combo1A"), QStringList({"1 - Питание"}));
    QCOMPARE(p.h->quitCodes, QList<int>({0}));
    QVERIFY(!p.h->frame().isVisible());
    store::Store check(p.folder.path());
    QVERIFY(rows(check, "Bank").empty());
    QCOMPARE(rows(check, "Bills_Dict").size(), std::size_t{1});
    QCOMPARE(p.folder.bytes(), contents(p.backupPath()));
}

void ServiceOperationsTest::restoreRefusesAMissingOrForeignBackup_data()
{
    DataBuilder foreign;
    foreign.database().password = u"чужой";
    const std::vector<std::uint8_t> foreignBytes = jet::encodeDatabase(foreign.database());
    QTest::addColumn<QByteArray>("backup");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("cause");
    QTest::newRow("no backup") << QByteArray() << false << QString();
    QTest::newRow("empty") << QByteArray() << true << utf8(texts::causeEmptyFile);
    QTest::newRow("another password")
        << QByteArray(reinterpret_cast<const char*>(foreignBytes.data()), qsizetype(foreignBytes.size()))
        << true << utf8(texts::causeOtherPassword);
}

void ServiceOperationsTest::restoreRefusesAMissingOrForeignBackup()
{
    QFETCH(QByteArray, backup);
    QFETCH(bool, exists);
    QFETCH(QString, cause);
    Program p([](DataBuilder& d) { d.account(1, "Питание"); });
    if (exists)
        writeBytes(p.backupPath(), backup);
    const QByteArray before = p.folder.bytes();
    p.yes();
    p.click("C2");
    const QString expected = exists ? utf8(texts::backupDamaged).arg(p.backupPath(), cause)
                                    : utf8(texts::backupMissing).arg(p.backupPath());
    QCOMPARE(p.boxes().last(), error(expected));
    QCOMPARE(p.folder.bytes(), before);
    QVERIFY(p.h->quitCodes.isEmpty());
    QVERIFY(p.h->frame().serviceWindow());
}

void ServiceOperationsTest::questionsAnsweredNoChangeNothing()
{
    Program p([](DataBuilder& d) {
        d.balance("100").account(1, "Питание").account(2, "Связь").bank(QDate(2026, 3, 15), "100");
        d.bill(QDate(2026, 3, 15), 1, "10");
    });
    writeBytes(p.backupPath(), QByteArray("прежняя копия"));
    const QByteArray before = p.folder.bytes();
    p.click("С12");
    p.list("Combo1")->setCurrentIndex(0);
    p.list("Combo2")->setCurrentIndex(0);
    p.list("Combo1B")->setCurrentIndex(0);
    p.list("Combo1C")->setCurrentIndex(1);
    p.click("Check1");
    for (const char* button : {"C1", "C2", "C16", "C14", "C15", "C3"})
        p.click(button);
    QCOMPARE(p.boxes().size(), 6);
    for (const ShownBox& box : p.h->dialogs.shown())
        QCOMPARE(box.buttons, ui::DialogButtons::YesNo);
    QCOMPARE(p.folder.bytes(), before);
    QCOMPARE(contents(p.backupPath()), QByteArray("прежняя копия"));
    QCOMPARE(p.items("Combo1"), QStringList({"1"}));
    QCOMPARE(p.list("Combo1")->currentText(), QString("1"));
    QVERIFY(p.h->quitCodes.isEmpty());
}

void ServiceOperationsTest::clearingEmptiesTheMainWindow()
{
    Program p([](DataBuilder& d) {
        d.password("секрет").balance("1000").account(1, "Питание").purse(1, "Наличные", "100");
        d.bank(QDate(2026, 3, 2), "1000").bill(QDate(2026, 3, 3), 1, "10");
    });
    QVERIFY(p.window == nullptr); // a password: the sign-in comes first
    GuiHarness::type(p.h->control(p.h->frame().signInWindow(), "T1"), "секрет");
    p.h->click(p.h->frame().signInWindow(), "Command1");
    QTRY_VERIFY(p.h->frame().mainWindow());
    p.h->click(p.h->frame().mainWindow(), "B2");
    p.window = p.h->frame().serviceWindow();
    QCOMPARE(p.h->text("S1"), QString("1000"));
    p.yes();
    p.click("C1");
    const QByteArray backup = contents(p.backupPath());

    p.click("Check1");
    p.yes();
    p.click("C16");
    QCOMPARE(p.boxes().mid(2),
             QStringList({attention(utf8(texts::clearQuestion)), information(utf8(texts::cleared))}));
    QCOMPARE(p.h->text("T10"), QString("0,00 р."));
    QCOMPARE(p.h->text("T11"), QString("0,00 р."));
    QCOMPARE(p.h->text("S1"), QString("0"));
    QCOMPARE(p.h->text("S2"), QString("0"));
    QVERIFY(p.h->items("R2").isEmpty() && p.h->items("Combo1").isEmpty());
    // The window keeps the last backup's date on screen; the file has forgotten it.
    QCOMPARE(p.field("T1")->text(), QString("15.03.2026"));
    store::Store check(p.folder.path());
    QVERIFY(!lookupValue(check, "Tech", "F3", "F0 = 'BACKUP'").isValid());
    QCOMPARE(lookupValue(check, "Tech", "F1", "F0 = 'PW'").toString(), QString("секрет"));
    QCOMPARE(contents(p.backupPath()), backup);
}

void ServiceOperationsTest::deletingABankOperationRaisesOrLowersTheBalance()
{
    Program p([](DataBuilder& d) {
        d.balance("700")
            .bank(QDate(2005, 11, 6), "1000", "Зарплата")
            .bank(QDate(2005, 11, 6), "-300", "Снятие");
        d.bank(QDate(2005, 11, 7), "5").bill(QDate(2005, 11, 6), 1, "1");
    });
    p.field("T12")->setText("06.11.2005");
    QTest::keyClick(p.field("T12"), Qt::Key_Return);
    QCOMPARE(p.items("Combo1"), QStringList({"2", "1"}));
    QCOMPARE(p.list("Combo1")->currentText(), QString());
    QCOMPARE(p.items("Combo2"), QStringList({"1"}));
    p.list("Combo1")->setCurrentIndex(0);
    p.yes();
    p.click("C14");
    QCOMPARE(p.boxes(),
             QStringList({attention(utf8(texts::confirmBankDeletion) +
                                    "\r\n\r\nОПЕРАЦИЯ N 2, НА СУММУ: -300\r\nНАИМЕНОВАНИЕ: Снятие"),
                          information(utf8(texts::operationDeleted).arg(2))}));
    QCOMPARE(p.h->text("T11"), QString("1 000,00 р."));
    QCOMPARE(p.items("Combo1"), QStringList({"1"}));
    QCOMPARE(p.items("Combo2"), QStringList({"1"}));
    // A number typed by hand from another day is deleted all the same.
    GuiHarness::type(p.list("Combo1")->lineEdit(), "3");
    p.yes();
    p.click("C14");
    QCOMPARE(p.h->text("T11"), QString("995,00 р."));
    QCOMPARE(rows(p.h->frame().store(), "Bank").size(), std::size_t{1});
}

void ServiceOperationsTest::deletingAnExpenseGivesTheMoneyBack()
{
    Program p([](DataBuilder& d) {
        d.balance("1000").purse(1, "Наличные", "10").purse(2, "Карта", "49,75");
        d.bill(QDate(2026, 3, 15), 3, "150,25", 2);
    });
    QCOMPARE(p.h->text("S2"), QString("150,25"));
    p.click("С12");
    p.list("Combo2")->setCurrentIndex(0);
    p.yes();
    p.click("C15");
    QCOMPARE(p.boxes().first(), attention(utf8(texts::confirmBillDeletion) +
                                          "\r\n\r\nОПЕРАЦИЯ N 1, НА СУММУ: 150,25\r\nНАИМЕНОВАНИЕ: покупка"));
    QCOMPARE(p.boxes().last(), information(utf8(texts::operationDeleted).arg(1)));
    QCOMPARE(p.h->text("S2"), QString("0"));
    QCOMPARE(p.h->text("T10"), QString("210,00 р."));
    QCOMPARE(p.h->text("T11"), QString("940,25 р."));
    QVERIFY(p.items("Combo2").isEmpty());
}

void ServiceOperationsTest::deletingRefusesWhatIsNotAnOperation()
{
    Program p([](DataBuilder& d) {
        d.balance("10").bank(QDate(2026, 3, 15), "10").bill(QDate(2026, 3, 15), 1, "1");
    });
    const QByteArray before = p.folder.bytes();
    // Nothing listed yet: both buttons have no number.
    p.click("C14");
    p.click("C15");
    p.click("С12");
    for (const char* typed : {"2", "abc", "-1", "0", "1.0"}) {
        p.list("Combo1")->setEditText(typed);
        p.list("Combo2")->setEditText(typed);
        p.click("C14");
        p.click("C15");
    }
    QCOMPARE(p.boxes(), QStringList(12, error(utf8(texts::selectOperation))));
    // A date that is not one keeps the lists as they were.
    p.field("T12")->setText("31.02.2026");
    p.click("С12");
    QCOMPARE(p.boxes().last(), error(utf8(texts::invalidOperationDate)));
    QCOMPARE(p.items("Combo1"), QStringList({"1"}));
    QCOMPARE(p.folder.bytes(), before);
}

void ServiceOperationsTest::movingExpensesBetweenAccounts()
{
    Program p([](DataBuilder& d) {
        d.account(3, "Еда")
            .account(7, "Питание")
            .bill(QDate(2025, 1, 1), 3, "10")
            .bill(QDate(2026, 2, 1), 5, "20");
        d.bill(QDate(2026, 3, 1), 3, "30");
    });
    const QByteArray before = p.folder.bytes();
    p.click("C3");
    p.list("Combo1B")->setCurrentIndex(0);
    p.click("C3");
    p.list("Combo1C")->setCurrentIndex(0);
    p.yes();
    p.click("C3");
    QCOMPARE(p.boxes(),
             QStringList({error(utf8(texts::selectAccountsToMove)), error(utf8(texts::selectAccountsToMove)),
                          attention("Подтвердите перенос расходов\r\nсо счета: 3 - Еда\r\n на счет: 3 - Еда"),
                          information(utf8(texts::moveDone))}));
    QCOMPARE(p.folder.bytes(), before);

    p.list("Combo1C")->setCurrentIndex(1);
    p.yes();
    p.click("C3");
    QCOMPARE(p.boxes().last(), information(utf8(texts::moveDone)));
    QStringList accounts;
    for (const store::Row& row : rows(p.h->frame().store(), "Bills"))
        accounts.append(row.value(2).toString());
    QCOMPARE(accounts, QStringList({"7", "5", "7"}));
    // An entry typed as a bare number is the code itself; text without one is refused.
    p.list("Combo1B")->setEditText("7");
    p.list("Combo1C")->setEditText("Питание");
    p.click("C3");
    QCOMPARE(p.boxes().last(), error(utf8(texts::selectAccountsToMove)));
}

QTEST_MAIN(ServiceOperationsTest)
