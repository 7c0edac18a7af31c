#include "StartUpTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
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

#include <functional>

using namespace velmora::test;

Q_DECLARE_METATYPE(std::function<void(DataBuilder&)>)

namespace {

using Fill = std::function<void(DataBuilder&)>;

QMdiSubWindow* holder(QWidget* window)
{
    return window ? qobject_cast<QMdiSubWindow*>(window->parentWidget()) : nullptr;
}

void writeData(const ProgramFolder& folder, const Fill& fill)
{
    DataBuilder data;
    fill(data);
    folder.write(data.database());
}

} // namespace

void StartUpTest::withoutPasswordTheMainWindowOpensAtOnce_data()
{
    QTest::addColumn<Fill>("fill");
    QTest::newRow("no password row") << Fill([](DataBuilder&) {});
    QTest::newRow("empty password") << Fill([](DataBuilder& d) { d.password(""); });
}

void StartUpTest::withoutPasswordTheMainWindowOpensAtOnce()
{
    QFETCH(Fill, fill);
    ProgramFolder folder;
    writeData(folder, fill);
    const QByteArray before = folder.bytes();
    GuiHarness h(folder);
    QVERIFY(h.start());
    QCOMPARE(h.frame().objectName(), QString("MDIForm1"));
    QCOMPARE(h.frame().windowTitle(), QString("Velmora"));
    QVERIFY(!h.frame().signInWindow());
    QVERIFY(h.frame().mainWindow());
    QCOMPARE(h.frame().mainWindow()->windowTitle(), QString("Velmora"));
    // 500 and 1000 twips; the splash sits in the corner above it.
    QCOMPARE(holder(h.frame().mainWindow())->pos(), QPoint(33, 66));
    QVERIFY(h.frame().splashWindow());
    QCOMPARE(holder(h.frame().splashWindow())->pos(), QPoint(0, 0));
    QVERIFY(h.dialogs.shown().isEmpty());
    QVERIFY(h.quitCodes.isEmpty());
    QCOMPARE(folder.bytes(), before);
}

void StartUpTest::signIn_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("right") << "Ключ-7" << true;
    QTest::newRow("other letter case") << "ключ-7" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("trailing blank") << "Ключ-7 " << false;
    QTest::newRow("only a prefix") << "Ключ" << false;
}

void StartUpTest::signIn()
{
    QFETCH(QString, typed);
    QFETCH(bool, accepted);
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.balance("10").password("Ключ-7"); });
    const QByteArray before = folder.bytes();
    GuiHarness h(folder);
    QVERIFY(h.start());
    app::SignInWindow* signIn = h.frame().signInWindow();
    QVERIFY(signIn);
    QVERIFY(!h.frame().mainWindow());
    QCOMPARE(signIn->windowTitle(), QString("Пароль"));
    QCOMPARE(holder(signIn)->pos(), QPoint(166, 200));
    auto* field = qobject_cast<QLineEdit*>(h.control(signIn, "T1"));
    QCOMPARE(field->echoMode(), QLineEdit::Password);
    GuiHarness::type(field, typed);
    h.click(signIn, "Command1");
    QTRY_VERIFY(!h.frame().signInWindow());
    if (accepted) {
        QVERIFY(h.frame().mainWindow());
        QCOMPARE(holder(h.frame().mainWindow())->pos(), QPoint(33, 66));
        QCOMPARE(h.text("T11"), QString("10,00 р."));
        QVERIFY2(h.dialogs.shown().isEmpty(), qPrintable(h.dialogs.shownTexts().join("; ")));
        QVERIFY(h.quitCodes.isEmpty());
    } else {
        QCOMPARE(h.dialogs.shown().size(), 1);
        const ShownBox box = h.dialogs.shown().front();
        QCOMPARE(box.text, QString::fromUtf8(app::texts::wrongPassword));
        QCOMPARE(box.title, QString("Ошибка"));
        QCOMPARE(box.icon, ui::DialogIcon::Information);
        QCOMPARE(box.buttons, ui::DialogButtons::Ok);
        QCOMPARE(h.quitCodes.size(), 1);
        QVERIFY(!h.frame().mainWindow());
        QVERIFY(!h.frame().isVisible());
    }
    QCOMPARE(folder.bytes(), before);
}

void StartUpTest::signInWithEnterKey()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.password("pw"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QTest::keyClicks(h.control(h.frame().signInWindow(), "T1"), "pw");
    QTest::keyClick(h.control(h.frame().signInWindow(), "T1"), Qt::Key_Return);
    QTRY_VERIFY(h.frame().mainWindow());
}

void StartUpTest::splashClosesItselfWhileTheUserTypes()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder& d) { d.password("pw"); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QVERIFY(h.frame().splashWindow());
    QVERIFY(h.frame().splashWindow()->isTimerRunning());
    // The sign-in window keeps the keyboard while the splash is up.
    QCOMPARE(h.frame().mdiArea()->activeSubWindow(), holder(h.frame().signInWindow()));
    QTest::keyClicks(h.control(h.frame().signInWindow(), "T1"), "p");
    QTRY_VERIFY_WITH_TIMEOUT(!h.frame().splashWindow(), 5000);
    QCOMPARE(h.frame().mdiArea()->subWindowList().size(), 1);
    QCOMPARE(h.frame().signInWindow()->typedPassword(), QString("p"));
    QVERIFY(h.quitCodes.isEmpty());
}

void StartUpTest::everyWayOutEndsTheProgram_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<QString>("password");
    QTest::newRow("Выход") << "B7"
                           << "";
    QTest::newRow("closing the main window") << "Form1"
                                             << "";
    QTest::newRow("closing the frame") << "MDIForm1"
                                       << "";
    QTest::newRow("closing the sign-in window") << "Form5"
                                                << "pw";
}

void StartUpTest::everyWayOutEndsTheProgram()
{
    QFETCH(QString, way);
    QFETCH(QString, password);
    ProgramFolder folder;
    writeData(folder, [&](DataBuilder& d) { d.password(password); });
    GuiHarness h(folder);
    QVERIFY(h.start());
    QVERIFY(h.frame().splashWindow());
    if (way == "B7")
        h.click(h.frame().mainWindow(), "B7");
    else if (way == "Form1")
        holder(h.frame().mainWindow())->close();
    else if (way == "Form5")
        holder(h.frame().signInWindow())->close();
    else
        h.frame().close();
    QCOMPARE(h.quitCodes, QList<int>{0});
    QVERIFY(h.dialogs.shown().isEmpty());
    // Every other window goes with it, the splash included.
    QTRY_VERIFY(h.frame().mdiArea()->subWindowList().isEmpty());
    QTRY_VERIFY(!h.frame().mainWindow());
    QTRY_VERIFY(!h.frame().splashWindow());
}

void StartUpTest::helpOpensFromButtonAndKey()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder&) {});
    QVERIFY(QFile::copy(VELMORA_HELP_PAGE, folder.path() + "/velmora-help.html"));
    GuiHarness h(folder);
    QVERIFY(h.start());
    QVERIFY(!h.frame().helpWindow());
    h.click(h.frame().mainWindow(), "B4");
    QVERIFY2(h.dialogs.shown().isEmpty(), qPrintable(h.dialogs.shownTexts().join("; ")));
    QVERIFY(h.frame().helpWindow());
    QTRY_VERIFY(h.frame().helpWindow()->isVisible());
    QVERIFY(h.frame().helpWindow()->pageTitle().contains("Velmora"));
    // The page speaks of every window of the program.
    for (const char* topic : {"Пароль", "Главное окно", "Банк", "Расходы", "Кошельки", "Сервис", "Аналитика",
                              "Диаграммы", "velmora.mdb"})
        QVERIFY2(h.frame().helpWindow()->pageText().contains(QString::fromUtf8(topic)), topic);
    h.frame().helpWindow()->close();
    // Keys reach the program only in its active window.
    h.frame().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&h.frame()));
    QTest::keyClick(h.mainControl("T12"), Qt::Key_F1);
    QTRY_VERIFY(h.frame().helpWindow()->isVisible());
    QVERIFY(h.dialogs.shown().isEmpty());
}

void StartUpTest::missingHelpPageIsReported()
{
    ProgramFolder folder;
    writeData(folder, [](DataBuilder&) {});
    GuiHarness h(folder);
    QVERIFY(h.start());
    h.click(h.frame().mainWindow(), "B4");
    QCOMPARE(h.dialogs.shown().size(), 1);
    QCOMPARE(h.dialogs.shown().front().title, QString("Ошибка"));
    QVERIFY(h.dialogs.shown().front().text.contains("velmora-help.html"));
    QVERIFY(!h.frame().helpWindow() || !h.frame().helpWindow()->isVisible());
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
