// The whole program driven at random with a fixed seed, as a careless user
// would: ordinary values or extremes in every field, list and input box,
// buttons in random order, the program left and started again. Each step
// checks that nothing failed inside and that the file changed only with a
// confirmation; every few hundred steps the file's money adds up, and at the
// end mdb-export reads the file as our reader does.
#include "WindowDriver.h"
#include "app/AppTexts.h"
#include "app/Application.h"
#include "app/MainWindowTexts.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/Transaction.h"
#include "store/WideAmount.h"
#include "support/StoreCalls.h"
#include "ui/UiTexts.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QTest>

#include <map>
#include <random>

using namespace velmora::test;

namespace {

enum Kind
{
    Amount,
    Date,
    Year,
    Text,
};

// Money at and beyond the Currency range, numbers in forms the program does
// not take, quotes, escapes, format and line characters, texts past the
// column size, endless list separators, NUL, right-to-left and astral characters.
const QStringList& extremes()
{
    static const QStringList values =
        QStringLiteral(
            "922337203685477,5807|-922337203685477,5808|922337203685477,5808|-922337203685477,5809|"
            "123456789012345|-12345678901234567|12345678901234567890|1e308|NaN|-0|1,2,3|１２３|'|"
            "\"; DELETE FROM Bank; --|\\|100%|%1 %n %s|строка\nвторая|")
            .split(u'|')
        << QString(255, u'ж') << QString(10000, u'x') << QStringLiteral(" -").repeated(12000)
        << QString("a") + QChar(0) + "b" << QString(QChar(0x200F)) + "123"
        << QString::fromUtf8("💰").repeated(200);
    return values;
}

class HostileRun
{
public:
    explicit HostileRun(const ProgramFolder& folder) : m_folder(folder) {}

    // Starts the program, signing in with the password the file holds now.
    bool start()
    {
        m_h = std::make_unique<WindowDriver>(m_folder);
        m_seenBoxes = 0;
        if (!m_h->start())
            return false;
        if (m_h->frame().signInWindow()) {
            store::Store reader(m_folder.path());
            m_h->signIn().field("T1")->setText(lookupValue(reader, "Tech", "F1", "F0 = 'PW'").toString());
            press(m_h->signIn(), "Command1");
        }
        return m_h->frame().mainWindow() != nullptr;
    }

    void step(int number)
    {
        m_action = QStringLiteral("step %1:").arg(number);
        const QByteArray before = m_folder.bytes();
        try {
            const int roll = pick(20);
            if (roll == 0) { // "Выход", and the program is started again
                press(m_h->main(), "B7");
                QCOMPARE(m_h->quitCodes, QList<int>{0});
                QVERIFY(start());
            } else if (roll < 5) {
                analyticsStep();
            } else if (roll < 10) {
                serviceStep();
            } else {
                mainWindowStep();
            }
        } catch (const std::exception& e) {
            return QTest::qFail(qPrintable(m_action + " threw: " + e.what()), __FILE__, __LINE__);
        }
        if (!QTest::currentTestFailed())
            afterStep(before);
    }

    // The stored balance is the bank's operations less the expenses, and the
    // purses, the bank's share and every month's sums lie within the Currency range.
    void checkFile()
    {
        store::Store reader(m_folder.path());
        store::WideAmount bank, spent, inPurses;
        std::map<int, store::WideAmount> months;
        for (const store::Row& row : rows(reader, "Bank")) {
            bank += row.amount(2);
            months[row.date(1).year() * 100 + row.date(1).month()] += row.amount(2);
        }
        for (const store::Row& row : rows(reader, "Bills")) {
            spent += row.amount(3);
            months[-row.date(1).year() * 100 - row.date(1).month()] += row.amount(3);
        }
        for (const store::Row& row : rows(reader, "Purse"))
            inPurses += row.amount(1);
        const store::Rows stored = query(reader, "SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'");
        QVERIFY(!stored.empty());
        QVERIFY2(stored.back().wide(0) == bank - spent, qPrintable(m_action));
        QVERIFY2(inPurses.toAmount() && (bank - spent - inPurses).toAmount(), qPrintable(m_action));
        for (const auto& [month, sum] : months)
            QVERIFY2(sum.toAmount(),
                     qPrintable(QStringLiteral("month %1 after %2").arg(month).arg(m_action)));
    }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool chance(int percent) { return pick(100) < percent; }

    // A usual value of the kind three times in five, else an extreme one.
    QString value(Kind kind)
    {
        static const QStringList usual[] = {
            QStringLiteral("100|12,345|-5|0,01|250000|900000000000000|-900000000000000|100000000000000|"
                           "461168601842738,79")
                .split(u'|'),
            QStringLiteral("15.03.2026|1.2.2026|2026-02-28|15.03.26|31.12.2025").split(u'|'),
            QStringLiteral("2026|2025|2005").split(u'|'),
            QStringLiteral("Зарплата|Д'Артаньян|1 - Питание|3|Наличные").split(u'|'),
        };
        const QStringList& values = chance(60) ? usual[kind] : extremes();
        return values.at(pick(static_cast<int>(values.size())));
    }

    // Only what a user can reach: a field that is enabled and not read-only.
    void set(const Form& form, const char* field, Kind kind)
    {
        QLineEdit* edit = form.field(field);
        if (edit->isEnabled() && !edit->isReadOnly())
            edit->setText(value(kind));
    }

    // An entry of an enabled list, no entry at all, or a text typed over it.
    void fillList(const Form& form, const char* list, Kind kind)
    {
        QComboBox* combo = form.list(list);
        if (!combo->isEnabled())
            return;
        if (combo->isEditable() && chance(40))
            return combo->setEditText(value(kind));
        combo->setCurrentIndex(pick(combo->count() + 1) - 1);
    }

    // Queues the answers to the boxes the button may ask, then presses it.
    void press(const Form& form, const char* button)
    {
        if (chance(85))
            m_h->dialogs.answerText(value(Text));
        else
            m_h->dialogs.cancelText();
        m_h->dialogs.answer(chance(75) ? ui::DialogAnswer::Yes : ui::DialogAnswer::No);
        m_action += QStringLiteral(" ") + button;
        form.click(button);
    }

    void mainWindowStep()
    {
        const Form form = m_h->main();
        const int action = pick(7);
        // A purse operation or an expense: on an open purse as a rule.
        if ((action == 1 || action == 2) && form.text("T1").isEmpty() && chance(80)) {
            fillList(form, "Combo1", Text);
            press(form, "VC1");
        }
        if (action == 0) {
            set(form, "T9", Amount);
            form.click(chance(50) ? "O1" : "O2");
        } else if (action == 1) {
            set(form, "T14", Amount);
            form.click(chance(50) ? "O3" : "O4");
        } else if (action == 2) {
            fillList(form, "R2", Text);
            set(form, "R1", Amount);
            set(form, "R3", Text);
            set(form, "R4", Text);
        } else if (action == 3) {
            fillList(form, "Combo1", Text);
        } else if (action == 4) {
            set(form, "T1", Text);
            set(form, "T3", Text);
        }
        if ((action == 0 || action == 2) && chance(30))
            set(form, "T12", Date);
        static const char* const buttons[] = {"Command1", "Command2", "B3", "VC1", "VC2", "VC3", "VC4"};
        press(form, buttons[action]);
    }

    void serviceStep()
    {
        const Form form = m_h->service();
        for (const char* name : {"T7", "T8"})
            if (chance(50))
                set(form, name, Amount);
        if (chance(50))
            set(form, "T12", Date);
        if (chance(50))
            set(form, "T1A", Text);
        for (const char* list : {"Combo1A", "Combo1B", "Combo1C", "Combo1", "Combo2"})
            if (chance(60))
                fillList(form, list, Text);
        static const char* const buttons[] = {"VC1A", "VC2A", "VC3A", "VC4A", "C3",  "B2",  "B7",
                                              "C1",   "C2",   "C16",  "С12",  "C14", "C15", "C14"};
        const char* button = buttons[pick(std::size(buttons))];
        // Clearing and restoring start much of the household afresh: less often.
        if ((qstrcmp(button, "C16") == 0 || qstrcmp(button, "C2") == 0) && chance(70))
            button = "С12";
        qobject_cast<QCheckBox*>(form.control("Check1"))
            ->setChecked(qstrcmp(button, "C16") == 0 && chance(80));
        press(form, button);
    }

    // The analytics window, or the charts it opened; reports are not shown.
    void analyticsStep()
    {
        if (m_h->frame().chartsWindow() && chance(30)) {
            const Form charts = m_h->charts();
            set(charts, "T1", Text);
            set(charts, "T2", Year);
            set(charts, "T3", Amount);
            return press(charts, "Command1");
        }
        const Form form = m_h->analytics();
        m_h->frame().analyticsWindow()->setReportViewer([](const analytics::ReportDocument&) {});
        fillList(form, "Combo1", Text);
        fillList(form, "Combo2", Year);
        fillList(form, "R2", Text);
        form.click(chance(50) ? "O1" : "O2");
        qobject_cast<QCheckBox*>(form.control("C1"))->setChecked(chance(40));
        static const char* const buttons[] = {"B1", "B1", "B2", "B3"};
        press(form, buttons[pick(std::size(buttons))]);
    }

    // No internal, engine or file failure; no change to the file without a
    // confirmation; the program ends only when a restore asks it to.
    void afterStep(const QByteArray& before)
    {
        const QList<ShownBox>& shown = m_h->dialogs.shown();
        bool confirmed = false;
        for (qsizetype i = m_seenBoxes; i < shown.size(); ++i) {
            const ShownBox& box = shown[i];
            QVERIFY2(box.icon != ui::DialogIcon::Critical && box.icon != ui::DialogIcon::None,
                     qPrintable(m_action + " showed " + box.title + ": " + box.text.left(200)));
            confirmed = confirmed || box.title == utf8(ui::texts::informationTitle) ||
                        box.text.startsWith(utf8(app::texts::amountPrefix));
        }
        m_seenBoxes = shown.size();
        if (!confirmed)
            QVERIFY2(m_folder.bytes() == before, qPrintable(m_action + " changed the file unconfirmed"));
        if (!m_h->quitCodes.isEmpty()) {
            QVERIFY2(shown.last().text.startsWith(utf8(service::texts::restoreDone)),
                     qPrintable(m_action + " ended the program"));
            QVERIFY(start());
        }
        QVERIFY2(m_h->frame().mainWindow()->isVisible(), qPrintable(m_action + " hid the main window"));
    }

    const ProgramFolder& m_folder;
    std::mt19937 m_random{20260316};
    std::unique_ptr<WindowDriver> m_h;
    qsizetype m_seenBoxes = 0;
    QString m_action;
};

} // namespace

class HostileInputTest : public QObject
{
    Q_OBJECT

private slots:
    void randomRunOverEveryWindow();
    void escapedExceptionIsReportedAndTheProgramGoesOn();
};

void HostileInputTest::randomRunOverEveryWindow()
{
    // Thousands of saves: on a memory file system their fsyncs cost nothing.
    if (QFileInfo("/dev/shm").isWritable())
        qputenv("TMPDIR", "/dev/shm");
    ProgramFolder folder;
    folder.write(DataBuilder()
                     .account(1, "Питание")
                     .account(2, "Транспорт")
                     .account(3, QString(255, u'ё'))
                     .database());
    HostileRun run(folder);
    QVERIFY(run.start());
    for (int i = 1; i <= 3000 && !QTest::currentTestFailed(); ++i) {
        run.step(i);
        if (!QTest::currentTestFailed() && i % 300 == 0)
            run.checkFile();
    }
    if (!QTest::currentTestFailed())
        expectMdbExportAgrees(folder);
}

// A slot that throws inside a transaction: one box, one log line, nothing of
// the transaction written, and the next action works.
void HostileInputTest::escapedExceptionIsReportedAndTheProgramGoesOn()
{
    WindowDriver h{DataBuilder()};
    QVERIFY(h.start());
    const QByteArray before = h.bytes();
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
    QCOMPARE(h.bytes(), before);
    h.dialogs.answerText("Зарплата");
    h.act(h.main(), "T9=10|O1|Command1");
    QCOMPARE(h.main().text("T11"), QString("10,00 р."));
}

int main(int argc, char* argv[])
{
    app::Application application(argc, argv);
    HostileInputTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "HostileInputTest.moc"
