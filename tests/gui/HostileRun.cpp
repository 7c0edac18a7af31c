#include "HostileRun.h"

#include "analytics/ReportPainter.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/AppTexts.h"
#include "app/MainWindow.h"
#include "app/MainWindowTexts.h"
#include "app/SignInWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "service/ui/ServiceWindow.h"
#include "service/ui/ServiceWindowTexts.h"
#include "store/CatalogueEntry.h"
#include "store/Store.h"
#include "support/StoreCalls.h"
#include "ui/UiTexts.h"

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPdfWriter>
#include <QTest>

namespace velmora::test {

namespace {

using store::WideAmount;

// Money at, beyond and far beyond the Currency range; numbers in forms the
// program does not take; quotes, escapes, format and line characters; then
// texts at and past the column size, endless list separators, NUL, a
// right-to-left mark and characters outside the Basic Multilingual Plane.
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

// The amount a box names between `before` and `after`.
WideAmount amountIn(const QString& text, const char* before, const char* after)
{
    const qsizetype from = text.indexOf(utf8(before)) + utf8(before).size();
    const qsizetype to = text.indexOf(utf8(after), from);
    return store::Amount::parse(text.mid(from, to - from)).value_or(store::Amount());
}

qlonglong largest(GuiHarness& h, const char* sql)
{
    const store::Rows rows = query(h.frame().store(), QString::fromUtf8(sql));
    return rows.empty() ? 0 : rows.front().integer(0);
}

bool is(const char* name, const char* other)
{
    return qstrcmp(name, other) == 0;
}

} // namespace

// A usual value of the kind three times in five, else an extreme one.
QString HostileRun::value(Kind kind)
{
    static const QStringList usual[] = {
        QStringLiteral("100|12,345|-5|0,01|250000|900000000000000|-900000000000000|100000000000000|"
                       "461168601842738,79")
            .split(u'|'),
        QStringLiteral("15.03.2026|1.2.2026|2026-02-28|15.03.26|31.12.2025").split(u'|'),
        QStringLiteral("2026|2025|2005").split(u'|'),
        QStringLiteral("Зарплата|Д'Артаньян|1 - Питание|3|Наличные").split(u'|'),
    };
    const QStringList& values = chance(60) ? usual[static_cast<int>(kind)] : extremes();
    return values.at(pick(static_cast<int>(values.size())));
}

bool HostileRun::start()
{
    m_h = std::make_unique<GuiHarness>(m_folder);
    m_seenBoxes = 0;
    m_openPurse.reset();
    if (!m_h->start())
        return false;
    if (m_h->frame().signInWindow())
        signIn();
    return m_h->frame().mainWindow() != nullptr;
}

// Sometimes a wrong password first: the program ends, and starts again.
void HostileRun::signIn()
{
    QWidget* form = m_h->frame().signInWindow();
    const QString typed = chance(25) ? value(Kind::Text) : m_account.password;
    qobject_cast<QLineEdit*>(control(form, "T1"))->setText(typed);
    press(form, "Command1");
    if (typed == m_account.password) {
        QVERIFY2(m_h->frame().mainWindow(), "the right password did not open the main window");
        return;
    }
    QCOMPARE(m_h->dialogs.shown().last().text, utf8(app::texts::wrongPassword));
    QCOMPARE(m_h->quitCodes, QList<int>{0});
    QVERIFY(start());
}

// Only what a user can reach: a field that is enabled and not read-only.
void HostileRun::set(QWidget* window, const char* field, Kind kind)
{
    auto* edit = qobject_cast<QLineEdit*>(control(window, field));
    if (edit->isEnabled() && !edit->isReadOnly())
        edit->setText(value(kind));
}

// An entry of an enabled list, no entry at all, or a text typed over it.
void HostileRun::fillList(QWidget* window, const char* list, Kind kind)
{
    auto* combo = qobject_cast<QComboBox*>(control(window, list));
    if (!combo->isEnabled())
        return;
    if (combo->isEditable() && chance(40))
        return combo->setEditText(value(kind));
    combo->setCurrentIndex(pick(combo->count() + 1) - 1);
}

void HostileRun::answerBoxes()
{
    if (chance(85))
        m_h->dialogs.answerText(value(Kind::Text));
    else
        m_h->dialogs.cancelText();
    m_h->dialogs.answer(chance(75) ? ui::DialogAnswer::Yes : ui::DialogAnswer::No);
}

void HostileRun::press(QWidget* window, const char* button)
{
    m_action += QStringLiteral(" ") + button;
    m_h->click(window, button);
}

void HostileRun::step(int number)
{
    m_action = QStringLiteral("step %1:").arg(number);
    m_deleting.reset();
    const QByteArray before = m_folder.bytes();
    try {
        act();
    } catch (const std::exception& e) {
        return QTest::qFail(qPrintable(m_action + " threw: " + e.what()), __FILE__, __LINE__);
    }
    if (!QTest::currentTestFailed())
        afterStep(before);
}

void HostileRun::act()
{
    const int roll = pick(20);
    if (roll == 0) { // "Выход", and the program is started again
        press(m_h->frame().mainWindow(), "B7");
        QCOMPARE(m_h->quitCodes, QList<int>{0});
        QVERIFY(start());
    } else if (roll < 4) {
        analyticsStep();
    } else if (roll == 4) {
        chartsStep();
    } else if (roll < 10) {
        serviceStep();
    } else {
        mainWindowStep();
    }
}

// One of the main window's operations as a user goes about it.
void HostileRun::mainWindowStep()
{
    QWidget* form = m_h->frame().mainWindow();
    const auto field = [&](const char* name) { return qobject_cast<QLineEdit*>(control(form, name)); };
    const int action = pick(7);
    // A purse operation or an expense: on an open purse as a rule.
    if ((action == 1 || action == 2) && field("T1")->text().isEmpty() && chance(80)) {
        fillList(form, "Combo1", Kind::Text);
        press(form, "VC1");
    }
    if (action == 0) {
        set(form, "T9", Kind::Amount);
        press(form, chance(50) ? "O1" : "O2");
    } else if (action == 1) {
        set(form, "T14", Kind::Amount);
        press(form, chance(50) ? "O3" : "O4");
    } else if (action == 2) {
        fillList(form, "R2", Kind::Text);
        for (const char* name : {"R1", "R3", "R4"})
            set(form, name, is(name, "R1") ? Kind::Amount : Kind::Text);
    } else if (action == 3) {
        fillList(form, "Combo1", Kind::Text);
    } else if (action == 4) {
        set(form, "T1", Kind::Text);
        set(form, "T3", Kind::Text);
    }
    if ((action == 0 || action == 2) && chance(30))
        set(form, "T12", Kind::Date);
    const QString chosen = qobject_cast<QComboBox*>(control(form, "Combo1"))->currentText();
    m_openPurse = field("T1")->text().isEmpty() ? std::nullopt : store::CatalogueEntry::codeOf(chosen);
    answerBoxes();
    static const char* const buttons[] = {"Command1", "Command2", "B3", "VC1", "VC2", "VC3", "VC4"};
    press(form, buttons[action]);
}

void HostileRun::serviceStep()
{
    press(m_h->frame().mainWindow(), "B2");
    QWidget* form = m_h->frame().serviceWindow();
    for (const char* name : {"T1A", "T7", "T8", "T12"})
        if (chance(50))
            set(form, name, is(name, "T1A") ? Kind::Text : is(name, "T12") ? Kind::Date : Kind::Amount);
    for (const char* list : {"Combo1A", "Combo1B", "Combo1C", "Combo1", "Combo2"})
        if (chance(60))
            fillList(form, list, Kind::Text);
    static const char* const buttons[] = {"VC1A", "VC2A", "VC3A", "VC4A", "C3",  "B2",  "B7",
                                          "C1",   "C2",   "C16",  "С12",  "C14", "C15", "C14"};
    const char* button = buttons[pick(std::size(buttons))];
    // Clearing and restoring start much of the household afresh: less often.
    if ((is(button, "C16") || is(button, "C2")) && chance(70))
        button = "С12";
    qobject_cast<QCheckBox*>(control(form, "Check1"))->setChecked(is(button, "C16") && chance(80));
    answerBoxes();
    press(form, button);
}

void HostileRun::analyticsStep()
{
    press(m_h->frame().mainWindow(), "B1");
    auto* form = m_h->frame().analyticsWindow();
    form->setReportViewer([this](const analytics::ReportDocument& report) {
        QBuffer pdf;
        pdf.open(QIODevice::WriteOnly);
        QPdfWriter writer(&pdf);
        writer.setResolution(72);
        analytics::ReportPainter::setUpPage(writer, report);
        if (analytics::ReportPainter::paint(report, writer) < 1)
            QTest::qFail(qPrintable(m_action + " printed no page"), __FILE__, __LINE__);
    });
    fillList(form, "Combo1", Kind::Text);
    fillList(form, "Combo2", Kind::Year);
    fillList(form, "R2", Kind::Text);
    press(form, chance(50) ? "O1" : "O2");
    qobject_cast<QCheckBox*>(control(form, "C1"))->setChecked(chance(40));
    static const char* const buttons[] = {"B1", "B1", "B2", "B3"};
    press(form, buttons[pick(std::size(buttons))]);
}

// Opened from the analytics window with "Диаграмма"; until then its step is one of that window.
void HostileRun::chartsStep()
{
    QWidget* form = m_h->frame().chartsWindow();
    if (!form)
        return analyticsStep();
    set(form, "T1", Kind::Text);
    set(form, "T2", Kind::Year);
    if (chance(50))
        set(form, "T3", Kind::Amount);
    press(form, "Command1");
}

// No internal, engine or file failure; no change to the file without a
// confirmation; the program ends only when a restore asks it to.
void HostileRun::afterStep(const QByteArray& before)
{
    const QList<ShownBox>& shown = m_h->dialogs.shown();
    bool confirmed = false;
    for (qsizetype i = m_seenBoxes; i < shown.size(); ++i) {
        const ShownBox& box = shown[i];
        QVERIFY2(box.icon != ui::DialogIcon::Critical && box.icon != ui::DialogIcon::None,
                 qPrintable(m_action + " showed " + box.title + ": " + box.text.left(200)));
        note(box.text);
        confirmed = confirmed || box.title == utf8(ui::texts::informationTitle) ||
                    box.text.startsWith(utf8(app::texts::amountPrefix));
    }
    m_seenBoxes = static_cast<int>(shown.size());
    if (!confirmed)
        QVERIFY2(m_folder.bytes() == before, qPrintable(m_action + " changed the file unconfirmed"));
    if (!m_h->quitCodes.isEmpty()) {
        QVERIFY2(shown.last().text.startsWith(utf8(service::texts::restoreDone)),
                 qPrintable(m_action + " ended the program"));
        QVERIFY(start());
    }
    QVERIFY2(m_h->frame().mainWindow()->isVisible(), qPrintable(m_action + " hid the main window"));
}

// Keeps the run's own account of what the confirmations say was done.
void HostileRun::note(const QString& text)
{
    namespace lt = app::texts;
    namespace st = service::texts;
    // Money moved in or out as stored: the typed amount or its negative, rounded.
    const auto in = [&](const char* end) { return amountIn(text, lt::amountPrefix, end).roundedToCents(); };
    const auto out = [&](const char* end) {
        return (-amountIn(text, lt::amountPrefix, end)).roundedToCents();
    };
    const bool money = text.startsWith(utf8(lt::amountPrefix));
    if (money && text.endsWith(utf8(lt::depositedSuffix)))
        m_account.bank += in(lt::depositedSuffix);
    else if (money && text.endsWith(utf8(lt::withdrawnSuffix)))
        m_account.bank += out(lt::withdrawnSuffix);
    else if (money && text.endsWith(utf8(lt::putInPurseSuffix)) && m_openPurse)
        m_account.purses[*m_openPurse].moved += in(lt::putInPurseSuffix);
    else if (money && text.endsWith(utf8(lt::takenFromPurseSuffix)) && m_openPurse)
        m_account.purses[*m_openPurse].moved += out(lt::takenFromPurseSuffix);
    else if (text.startsWith(utf8(lt::expenseAmountLine)))
        m_account.expenses += amountIn(text, lt::expenseAmountLine, lt::lineBreak).roundedToCents();
    else if (text.contains(utf8(st::amountLine)))
        m_deleting = {text.startsWith(utf8(st::confirmBankDeletion)),
                      amountIn(text, st::amountLine, lt::lineBreak)};
    else if (text.startsWith(utf8(st::operationDeleted).left(10)) && m_deleting)
        (m_deleting->first ? m_account.bank : m_account.expenses) -= m_deleting->second;
    else if (text == utf8(lt::purseAdded))
        m_account.purses[static_cast<int>(largest(*m_h, "SELECT MAX(F0) FROM Purse_Dict"))] =
            Purse{{}, largest(*m_h, "SELECT MAX(F0) FROM Bills")};
    else if (text == utf8(lt::purseDeleted) && m_openPurse)
        m_account.purses.erase(*m_openPurse);
    else if (text == utf8(st::cleared))
        m_account = Account{{}, {}, {}, m_account.password};
    else if (text == utf8(st::passwordSet) || text == utf8(st::passwordRemoved))
        m_account.password = lookupValue(m_h->frame().store(), "Tech", "F1", "F0 = 'PW'").toString();
    else if (text.startsWith(utf8(st::backupDone)))
        m_backedUp = m_account;
    else if (text.startsWith(utf8(st::restoreDone)))
        m_account = m_backedUp;
}

void HostileRun::checkFile()
{
    store::Store reader(m_folder.path());
    WideAmount bank, spent, inPurses;
    std::map<int, WideAmount> expected, purses, months;
    for (const auto& [code, purse] : m_account.purses)
        expected[code] = purse.moved;
    for (const store::Row& row : rows(reader, "Bank")) {
        bank += row.amount(2);
        months[row.date(1).year() * 100 + row.date(1).month()] += row.amount(2);
    }
    for (const store::Row& row : rows(reader, "Bills")) {
        spent += row.amount(3);
        months[-row.date(1).year() * 100 - row.date(1).month()] += row.amount(3);
        const auto purse = m_account.purses.find(static_cast<int>(row.integer(6)));
        if (purse != m_account.purses.end() && row.integer(0) > purse->second.billsBefore)
            expected[purse->first] -= row.amount(3);
    }
    for (const store::Row& row : rows(reader, "Purse")) {
        purses[static_cast<int>(row.integer(0))] = row.amount(1);
        inPurses += row.amount(1);
    }
    QCOMPARE(bank, m_account.bank);
    QCOMPARE(spent, m_account.expenses);
    QVERIFY2(purses == expected, qPrintable(m_action));
    const store::Rows stored = query(reader, "SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'");
    QVERIFY(!stored.empty());
    QCOMPARE(stored.back().wide(0), bank - spent);
    // The purses, the bank's share and every month's income and expenses.
    QVERIFY2(inPurses.toAmount() && (bank - spent - inPurses).toAmount(), qPrintable(m_action));
    for (const auto& [month, sum] : months)
        QVERIFY2(sum.toAmount(), qPrintable(QStringLiteral("month %1 after %2").arg(month).arg(m_action)));
}

} // namespace velmora::test
