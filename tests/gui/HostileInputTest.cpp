// The whole program under hostile input (see HostileRun); an exception that
// escapes an action; a data file of extreme values in every window.
#include "DataBuilder.h"
#include "HostileRun.h"
#include "WindowDriver.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/AppTexts.h"
#include "app/Application.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "service/ui/ServiceWindow.h"
#include "store/Transaction.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
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
    void extremeValuesShowInEveryWindow();
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

// Currency extremes in every money column, thousands of purses and accounts
// with names of 255 characters, forty accounts with expenses: every window
// opens and shows the figures.
void HostileInputTest::extremeValuesShowInEveryWindow()
{
    const QString max = "922337203685477,5807", min = "-922337203685477,5808";
    DataBuilder data;
    data.balance(min);
    for (int code = 1; code <= 2000; ++code) {
        const QString name = QString::number(code).leftJustified(255, u'я');
        data.account(code, name).purse(code, name, max);
    }
    for (int i = 0; i < 1500; ++i) {
        data.bank(QDate(2026, 3, 1 + i % 28), max).bank(QDate(2026, 2, 1 + i % 28), min);
        data.bill(QDate(2026, 3, 1 + i % 28), 1 + i % 40, max).bill(QDate(2026, 2, 2), 2, max, 7);
    }
    for (jet::Row& rate : data.database().table(u"Cur")->rows)
        rate[1] = jet::Currency{rate[0] == jet::Value(std::int32_t{2}) ? unitsOf(max) : unitsOf(min)};
    ProgramFolder folder;
    folder.write(data.database());
    WindowDriver h(folder);
    QVERIFY(h.start());
    QStringList shown;
    for (const char* name : {"T10", "T11", "S1", "S2", "S3", "S4"})
        shown.append(h.main().text(name));
    const QString march = "1383505805528216371,05";
    QCOMPARE(shown, QStringList({"1 844 674 407 370 955 161,40 р.", "-1 845 596 744 574 640 638,98 р.", march,
                                 march, "-1383505805528216371,2", march}));

    const Form service = h.service();
    QVERIFY(service.enabled("C2"));
    QCOMPARE(service.items("Combo1A").size(), 2000);
    QCOMPARE(service.text("T7"), max);

    const Form analytics = h.analytics();
    QStringList totals;
    for (const char* name : {"T3", "T4", "T5", "T6"})
        totals.append(analytics.text(name));
    QCOMPARE(totals, QStringList({march, "-0,15", march, "2767011611056432742,1"}));
    qobject_cast<QCheckBox*>(analytics.control("C1"))->setChecked(true);
    analytics.click("B1");
    QVERIFY(h.charts().control("MSChart2")->isVisible());
    QVERIFY2(h.dialogs.shown().isEmpty(), qPrintable(h.dialogs.shownTexts().join("; ")));
}

int main(int argc, char* argv[])
{
    app::Application application(argc, argv);
    HostileInputTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "HostileInputTest.moc"
