// The whole program under hostile input (see HostileRun); an exception that
// escapes an action.
#include "HostileRun.h"
#include "WindowDriver.h"
#include "app/AppTexts.h"
#include "app/Application.h"
#include "app/MainWindow.h"
#include "store/Transaction.h"

#include <QFileInfo>
#include <QTest>

using namespace velmora::test;

namespace {

constexpr int kSteps = 3000;
constexpr int kCheckEvery = 300;

} // namespace

class HostileInputTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void randomRunOverEveryWindow();
    void escapedExceptionIsReportedAndTheProgramGoesOn();
};

// Thousands of saves: on a memory file system their fsyncs cost nothing.
void HostileInputTest::initTestCase()
{
    if (QFileInfo("/dev/shm").isWritable())
        qputenv("TMPDIR", "/dev/shm");
}

void HostileInputTest::randomRunOverEveryWindow()
{
    ProgramFolder folder;
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(3, QString(255, u'ё'));
    folder.write(data.database());
    HostileRun run(folder);
    QVERIFY(run.start());
    for (int i = 1; i <= kSteps && !QTest::currentTestFailed(); ++i) {
        run.step(i);
        if (!QTest::currentTestFailed() && i % kCheckEvery == 0)
            run.checkFile();
    }
    QVERIFY(!QTest::currentTestFailed());
}

// A slot that throws inside a transaction: one box, one log line, nothing of
// the transaction written, and the next action works.
void HostileInputTest::escapedExceptionIsReportedAndTheProgramGoesOn()
{
    ProgramFolder folder;
    folder.write(DataBuilder().database());
    WindowDriver h(folder);
    QVERIFY(h.start());
    const QByteArray before = folder.bytes();
    QMetaObject::invokeMethod(
        h.frame().mainWindow(),
        [&h] {
            store::Transaction tx(h.frame().store());
            tx.execute("UPDATE Tech SET F2 = 5 WHERE F0 = 'OSTATOK'");
            throw std::runtime_error("проверка");
        },
        Qt::QueuedConnection);
    QTRY_COMPARE(h.dialogs.shown().size(), 1);
    QCOMPARE(h.dialogs.shown().front().text, utf8(app::texts::actionFailed).arg("проверка"));
    QCOMPARE(h.log, QStringList{utf8(app::texts::actionFailedLog).arg("проверка")});
    QCOMPARE(folder.bytes(), before);
    h.dialogs.answerText("Зарплата");
    h.main().field("T9")->setText("10");
    h.main().click("O1");
    h.main().click("Command1");
    QCOMPARE(h.main().text("T11"), QString("10,00 р."));
}

int main(int argc, char* argv[])
{
    app::Application application(argc, argv);
    HostileInputTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "HostileInputTest.moc"
