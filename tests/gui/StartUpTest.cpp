// Start-up: the main window at once or the sign-in first, the splash above
// them, every way out, a data file that cannot be used, the help page, the
// standard buttons in Russian.
#include "WindowDriver.h"
#include "app/AppTexts.h"
#include "app/HelpWindow.h"
#include "app/MainWindow.h"
#include "app/QtTranslation.h"
#include "app/SignInWindow.h"
#include "store/Schema.h"
#include "store/Store.h"
#include "store/StoreTexts.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace velmora::test;

namespace {

QMdiSubWindow* holder(QWidget* window)
{
    return qobject_cast<QMdiSubWindow*>(window->parentWidget());
}

} // namespace

class StartUpTest : public QObject
{
    Q_OBJECT

private slots:
    void splashClosesItselfWhileTheUserTypes();
    void everyWayOutEndsTheProgram();
    void troubleWithTheDataFile();
    void helpAndStandardButtons();
};

// The splash in the corner, the sign-in window at 2500 and 3000 twips with
// its password hidden; it keeps the keyboard while the splash is up and what
// was typed stays when the splash closes. The right password, with Enter,
// opens the main window at 500 and 1000 twips and writes nothing.
void StartUpTest::splashClosesItselfWhileTheUserTypes()
{
    WindowDriver w(DataBuilder().balance("10").password("Ключ-7"));
    QVERIFY(w.start());
    QVERIFY(w.frame().splashWindow()->isTimerRunning() && !w.frame().mainWindow());
    QCOMPARE(holder(w.frame().splashWindow())->pos(), QPoint(0, 0));
    QCOMPARE(holder(w.frame().signInWindow())->pos(), QPoint(166, 200));
    QCOMPARE(w.signIn().field("T1")->echoMode(), QLineEdit::Password);
    QCOMPARE(w.frame().mdiArea()->activeSubWindow(), holder(w.frame().signInWindow()));
    Form::type(w.signIn().field("T1"), "Ключ");
    w.closeSplash();
    QTRY_VERIFY(!w.frame().splashWindow());
    QCOMPARE(w.frame().mdiArea()->subWindowList().size(), 1);
    Form::type(w.signIn().field("T1"), "-7");
    QTest::keyClick(w.signIn().field("T1"), Qt::Key_Return);
    QTRY_VERIFY(!w.frame().signInWindow());
    QCOMPARE(holder(w.frame().mainWindow())->pos(), QPoint(33, 66));
    QCOMPARE(w.main().text("T11"), QString("10,00 р."));
    w.expect({}, false);
    QVERIFY(w.quitCodes.isEmpty());
}

// Выход, closing the main window, the frame or the sign-in window, a password
// in the wrong letter case: every other window goes with it, the splash
// included. An empty password asks for none.
void StartUpTest::everyWayOutEndsTheProgram()
{
    for (const QString way : {"B7", "Form1", "MDIForm1", "Form5", "ключ-7"}) {
        const bool signIn = way == "Form5" || way == "ключ-7";
        WindowDriver w(DataBuilder().password(signIn ? "Ключ-7" : ""));
        QVERIFY(w.start());
        if (way == "B7")
            w.main().click("B7");
        else if (way == "MDIForm1")
            w.frame().close();
        else if (way.startsWith("Form"))
            holder(way == "Form1" ? static_cast<QWidget*>(w.frame().mainWindow()) : w.frame().signInWindow())
                ->close();
        else
            w.act(w.signIn(), "T1=" + way + "|Command1");
        const QStringList refused{"Ошибка: " + utf8(app::texts::wrongPassword)};
        QVERIFY2(w.newBoxes() == (way == "ключ-7" ? refused : QStringList()), qPrintable(way));
        QVERIFY2(w.quitCodes == QList<int>{0}, qPrintable(way));
        QTRY_VERIFY(w.frame().mdiArea()->subWindowList().isEmpty());
        QTRY_VERIFY(!w.frame().mainWindow() && !w.frame().splashWindow());
    }
}

// A missing file or one with another password ends the program with its
// reason shown and logged, and a non-zero exit code. A damaged or
// write-protected one is opened for reading: the reason is shown (a damaged
// file's at once), every change is refused with it, the file keeps its bytes,
// and the way back through the backup stays open for the damaged one.
void StartUpTest::troubleWithTheDataFile()
{
    using namespace store::texts;
    enum Trouble
    {
        Missing,
        OtherPassword,
        Garbage,
        WriteProtected,
    };
    const QString damaged = utf8(fileDamaged).arg("%1", utf8(causeNotDataFile));
    for (const auto& [trouble, message] : {std::pair{Missing, utf8(fileMissing)},
                                           {OtherPassword, utf8(wrongPassword)},
                                           {Garbage, damaged},
                                           {WriteProtected, utf8(fileReadOnly)}}) {
        ProgramFolder folder;
        DataBuilder data;
        data.account(1, "Питание").purse(1, "Кошелёк", "100").bill(QDate(2026, 3, 1), 1, "10");
        if (trouble == OtherPassword)
            data.database().password = u"чужой";
        if (trouble != Missing)
            folder.write(data.database());
        if (trouble == Garbage)
            folder.writeBytes(QByteArray(folder.bytes().size(), '\x5a'));
        if (trouble == WriteProtected)
            QFile::setPermissions(folder.dataFilePath(), QFile::ReadOwner);
        const QByteArray before = folder.bytes();
        WindowDriver h(folder);
        const QString expected = message.arg(h.frame().store().dataFilePath());
        const bool ends = trouble == Missing || trouble == OtherPassword;
        QCOMPARE(h.start(), !ends);
        QCOMPARE(bool(h.frame().mainWindow()), !ends);
        if (ends) {
            QVERIFY(h.frame().exitCode() != 0);
            QCOMPARE(h.quitCodes, QList<int>{h.frame().exitCode()});
            QVERIFY(!h.frame().signInWindow());
        } else {
            QCOMPARE(h.dialogs.shown().size(), trouble == Garbage ? 1 : 0);
            h.dialogs.answerText(QStringLiteral("Зарплата"));
            h.act(h.main(), "T9=100|Command1");
        }
        const ShownBox box = h.dialogs.shown().last();
        QCOMPARE(box.title + ": " + box.text, "Ошибка: " + expected);
        QCOMPARE(box.icon, ui::DialogIcon::Critical);
        QCOMPARE(h.log.last(), expected);
        QCOMPARE(folder.bytes(), before);
        if (ends)
            continue;
        // The backup replaces a damaged file, never a protected one.
        ProgramFolder other;
        other.write(DataBuilder().database());
        const QByteArray backup = other.bytes();
        writeBytes(QDir(folder.path()).filePath(store::kBackupFileName), backup);
        h.act(h.service(), "yes|C2");
        QCOMPARE(folder.bytes(), trouble == Garbage ? backup : before);
        QCOMPARE(h.quitCodes, trouble == Garbage ? QList<int>{0} : QList<int>{});
        if (trouble == WriteProtected)
            QCOMPARE(h.dialogs.shown().last().text, expected);
    }
}

// Without the help page the user is told where it should be; with it, the
// button and F1 open it. Qt's standard buttons speak Russian.
void StartUpTest::helpAndStandardButtons()
{
    WindowDriver w{DataBuilder()};
    QVERIFY(w.start());
    w.main().click("B4");
    const QString page = QDir::toNativeSeparators(w.folder().path() + "/velmora-help.html");
    QCOMPARE(w.newBoxes(), QStringList{"Ошибка: " + utf8(app::texts::helpMissing).arg(page)});
    QVERIFY(QFile::copy(VELMORA_HELP_PAGE, page));
    w.main().click("B4");
    QTRY_VERIFY(w.frame().helpWindow() && w.frame().helpWindow()->isVisible());
    QVERIFY(w.frame().helpWindow()->pageText().contains(utf8("Диаграммы")));
    w.frame().helpWindow()->close();
    // Keys reach the program only in its active window.
    w.frame().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    QTest::keyClick(w.main().control("T12"), Qt::Key_F1);
    QTRY_VERIFY(w.frame().helpWindow()->isVisible());
    QVERIFY(w.newBoxes().isEmpty());

    QVERIFY(app::installRussianQtTexts(*QCoreApplication::instance()));
    QMessageBox box(QMessageBox::Information, "Velmora", "?",
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    QStringList captions;
    for (const auto button : {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel})
        captions.append(box.button(button)->text().remove('&'));
    QCOMPARE(captions, QStringList({"Да", "Нет", "Отмена"}));
}

QTEST_MAIN(StartUpTest)
#include "StartUpTest.moc"
