// Start-up: the main window at once or the sign-in first, the splash above
// them, every way out, the help page, the standard buttons in Russian.
#include "WindowDriver.h"
#include "app/AppTexts.h"
#include "app/HelpWindow.h"
#include "app/MainWindow.h"
#include "app/QtTranslation.h"
#include "app/SignInWindow.h"

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
    return window ? qobject_cast<QMdiSubWindow*>(window->parentWidget()) : nullptr;
}

} // namespace

class StartUpTest : public QObject
{
    Q_OBJECT

private slots:
    void signIn_data();
    void signIn();
    void splashClosesItselfWhileTheUserTypes();
    void everyWayOutEndsTheProgram_data();
    void everyWayOutEndsTheProgram();
    void helpOpensFromButtonAndKeyOrSaysItIsMissing();
    void standardButtonsSpeakRussian();
};

void StartUpTest::signIn_data()
{
    QTest::addColumn<QString>("password"); // of the data file
    QTest::addColumn<QString>("typed");    // null: no sign-in asked for
    QTest::addColumn<bool>("accepted");
    QTest::newRow("no password") << QString() << QString() << true;
    QTest::newRow("an empty password") << "" << QString() << true;
    QTest::newRow("right") << "Ключ-7"
                           << "Ключ-7" << true;
    QTest::newRow("other letter case") << "Ключ-7"
                                       << "ключ-7" << false;
    QTest::newRow("empty") << "Ключ-7"
                           << "" << false;
    QTest::newRow("trailing blank") << "Ключ-7"
                                    << "Ключ-7 " << false;
}

// The main window at 500 and 1000 twips, the sign-in window at 2500 and
// 3000, the splash in the corner above them.
void StartUpTest::signIn()
{
    QFETCH(QString, password);
    QFETCH(QString, typed);
    QFETCH(bool, accepted);
    DataBuilder data;
    data.balance("10");
    if (!password.isNull())
        data.password(password);
    WindowDriver w(data);
    const QByteArray before = w.bytes();
    QVERIFY(w.start());
    QCOMPARE(holder(w.frame().splashWindow())->pos(), QPoint(0, 0));
    QCOMPARE(bool(w.frame().signInWindow()), !typed.isNull());
    if (!typed.isNull()) {
        QVERIFY(!w.frame().mainWindow());
        QCOMPARE(holder(w.frame().signInWindow())->pos(), QPoint(166, 200));
        QCOMPARE(w.signIn().field("T1")->echoMode(), QLineEdit::Password);
        w.signIn().enter("T1", typed);
        QTest::keyClick(w.signIn().field("T1"), Qt::Key_Return);
        QTRY_VERIFY(!w.frame().signInWindow());
    }
    if (accepted) {
        QCOMPARE(holder(w.frame().mainWindow())->pos(), QPoint(33, 66));
        QCOMPARE(w.main().text("T11"), QString("10,00 р."));
        QVERIFY(w.dialogs.shown().isEmpty() && w.quitCodes.isEmpty());
    } else {
        QCOMPARE(w.newBoxes(), QStringList{"Ошибка: " + utf8(app::texts::wrongPassword)});
        QCOMPARE(w.quitCodes, QList<int>{0});
        QVERIFY(!w.frame().mainWindow() && !w.frame().isVisible());
    }
    QCOMPARE(w.bytes(), before);
}

// The sign-in window keeps the keyboard while the splash is up; when the
// splash's time is up it closes, and what was typed stays.
void StartUpTest::splashClosesItselfWhileTheUserTypes()
{
    WindowDriver w(DataBuilder().password("pw"));
    QVERIFY(w.start());
    QVERIFY(w.frame().splashWindow()->isTimerRunning());
    QCOMPARE(w.frame().mdiArea()->activeSubWindow(), holder(w.frame().signInWindow()));
    QTest::keyClicks(w.signIn().field("T1"), "p");
    w.closeSplash();
    QTRY_VERIFY(!w.frame().splashWindow());
    QCOMPARE(w.frame().mdiArea()->subWindowList().size(), 1);
    QCOMPARE(w.frame().signInWindow()->typedPassword(), QString("p"));
    QVERIFY(w.quitCodes.isEmpty());
}

void StartUpTest::everyWayOutEndsTheProgram_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("Выход") << "B7";
    QTest::newRow("closing the main window") << "Form1";
    QTest::newRow("closing the frame") << "MDIForm1";
    QTest::newRow("closing the sign-in window") << "Form5";
}

void StartUpTest::everyWayOutEndsTheProgram()
{
    QFETCH(QString, way);
    WindowDriver w(DataBuilder().password(way == "Form5" ? "pw" : ""));
    QVERIFY(w.start());
    if (way == "B7")
        w.main().click("B7");
    else if (way == "Form1")
        holder(w.frame().mainWindow())->close();
    else if (way == "Form5")
        holder(w.frame().signInWindow())->close();
    else
        w.frame().close();
    QCOMPARE(w.quitCodes, QList<int>{0});
    QVERIFY(w.dialogs.shown().isEmpty());
    // Every other window goes with it, the splash included.
    QTRY_VERIFY(w.frame().mdiArea()->subWindowList().isEmpty());
    QTRY_VERIFY(!w.frame().mainWindow() && !w.frame().splashWindow());
}

void StartUpTest::helpOpensFromButtonAndKeyOrSaysItIsMissing()
{
    {
        WindowDriver w{DataBuilder()};
        QVERIFY(w.start());
        w.main().click("B4");
        const QStringList boxes = w.newBoxes();
        QVERIFY(boxes.size() == 1 && boxes[0].startsWith("Ошибка: ") &&
                boxes[0].contains("velmora-help.html"));
        QVERIFY(!w.frame().helpWindow() || !w.frame().helpWindow()->isVisible());
    }
    WindowDriver w{DataBuilder()};
    QVERIFY(QFile::copy(VELMORA_HELP_PAGE, w.folder().path() + "/velmora-help.html"));
    QVERIFY(w.start());
    w.main().click("B4");
    QTRY_VERIFY(w.frame().helpWindow() && w.frame().helpWindow()->isVisible());
    // The page speaks of every window of the program.
    for (const char* topic : {"Пароль", "Главное окно", "Кошельки", "Сервис", "Аналитика", "Диаграммы"})
        QVERIFY2(w.frame().helpWindow()->pageText().contains(utf8(topic)), topic);
    w.frame().helpWindow()->close();
    // Keys reach the program only in its active window.
    w.frame().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    QTest::keyClick(w.main().control("T12"), Qt::Key_F1);
    QTRY_VERIFY(w.frame().helpWindow()->isVisible());
    QVERIFY(w.dialogs.shown().isEmpty());
}

void StartUpTest::standardButtonsSpeakRussian()
{
    QVERIFY(app::installRussianQtTexts(*QCoreApplication::instance()));
    QMessageBox box(QMessageBox::Information, "Velmora", "?",
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    QCOMPARE(box.button(QMessageBox::Yes)->text().remove('&'), QString("Да"));
    QCOMPARE(box.button(QMessageBox::No)->text().remove('&'), QString("Нет"));
    QCOMPARE(box.button(QMessageBox::Cancel)->text().remove('&'), QString("Отмена"));
}

QTEST_MAIN(StartUpTest)
#include "StartUpTest.moc"
