// The operations window on a small household: each filter narrows the list
// and its count and sum; columns sort as a reader expects; the export reads
// back as the list; the window opens by its button and Ctrl+F, shows what
// was booked meanwhile when it is active again, and closes with Esc.
// Deletions and corrections go to the trash and come back with their money
// exactly, also in a long random run.
#include "WindowDriver.h"
#include "operations/Correction.h"
#include "operations/Deletion.h"
#include "operations/OperationTableModel.h"
#include "operations/Trash.h"
#include "operations/ui/CorrectionDialog.h"
#include "operations/ui/OperationsWindow.h"
#include "operations/ui/TrashDialog.h"
#include "store/Schema.h"
#include "store/Transaction.h"

#include <QDateEdit>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <random>

using namespace velmora::test;
using operations::OperationTableModel;

using Setup = std::function<void(const Form&)>;
Q_DECLARE_METATYPE(Setup)

namespace {

DataBuilder household()
{
    DataBuilder d;
    d.balance("299,76").account(3, "Питание").account(10, "Связь");
    d.purse(1, "Наличные", "0").purse(2, "Карта", "0");
    d.bank(QDate(2026, 3, 1), "1000", "Зарплата").bank(QDate(2026, 3, 5), "-200", "Снятие наличных");
    d.undatedBank("50");
    d.bill(QDate(2026, 2, 20), 3, "99,99", 1).named("Хлеб; \"Бородинский\"");
    d.bill(QDate(2026, 3, 2), 3, "150,25", 1).named("Ёлка", "праздник");
    d.bill(QDate(2026, 3, 5), 10, "300", 2).named("Телефон", "за ЕЛКУ");
    return d;
}

operations::OperationsWindow* window(WindowDriver& w)
{
    return w.frame().operationsWindow();
}

// The list as "kind number", top to bottom.
QStringList shown(const OperationTableModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows << model.text(row, OperationTableModel::Kind) + " " +
                    model.text(row, OperationTableModel::Number);
    return rows;
}

QStringList column(const OperationTableModel& model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts << model.text(row, column);
    return texts;
}

void setDate(const Form& f, const char* name, QDate day)
{
    static_cast<QDateEdit*>(f.control(name))->setDate(day);
}

// A CSV text split into rows of fields, quotes undone.
QList<QStringList> parseCsv(const QString& text)
{
    QList<QStringList> rows{{}};
    QString field;
    bool quoted = false;
    const auto next = [&text](qsizetype i) { return i + 1 < text.size() ? text[i + 1] : QChar(); };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (quoted && ch == '"' && next(i) == '"')
            field += text[++i];
        else if (ch == '"')
            quoted = !quoted;
        else if (!quoted && ch == ';')
            rows.last() << std::exchange(field, {});
        else if (!quoted && ch == '\r' && next(i) == '\n') {
            rows.last() << std::exchange(field, {});
            rows << QStringList{};
            ++i;
        } else
            field += ch;
    }
    rows.removeLast(); // after the last line end
    return rows;
}

void choose(QTableView* list, std::initializer_list<int> rows)
{
    for (const int row : rows)
        list->selectionModel()->select(list->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

// The rows of the trash without the moment each was put in.
QStringList trashRows(const QStringList& rows)
{
    QStringList kept;
    for (const QString& row : rows)
        kept << row.section(" | ", 0, 0) + " | " + row.section(" | ", 2);
    return kept;
}

// What the operations, the trash and the money hold, rows in number order.
QStringList everything(const std::function<QStringList(const char*)>& rows)
{
    QStringList all;
    for (const char* table : {"Bank", "Bills", "Purse", "Tech"}) {
        QStringList sorted = rows(table);
        std::ranges::sort(sorted, [](const QString& a, const QString& b) {
            return a.section('|', 0, 0).trimmed().toLongLong() < b.section('|', 0, 0).trimmed().toLongLong();
        });
        all << table << sorted;
    }
    return all;
}

// The money a deletion, a correction and a return leave as they found it:
// the stored balance less the bank rows plus the expenses, and each purse
// plus the expenses paid from it.
QStringList untouchedMoney(store::Store& s)
{
    store::Transaction tx(s);
    store::WideAmount offset = tx.lookupAmount("Tech", "F2", "F0 = 'OSTATOK'");
    std::map<qlonglong, store::WideAmount> purses;
    for (const store::Row& row : tx.query("SELECT F0, F1 FROM Purse"))
        purses[row.integer(0)] += row.amount(1);
    for (const store::Row& row : tx.query("SELECT F2 FROM Bank"))
        offset -= row.amount(0);
    for (const store::Row& row : tx.query("SELECT F3, F6 FROM Bills")) {
        offset += row.amount(0);
        purses[row.integer(1)] += row.amount(0);
    }
    QStringList money{offset.toDisplayString()};
    for (const auto& [code, sum] : purses)
        money << QString::number(code) + ": " + sum.toDisplayString();
    tx.commit();
    return money;
}

} // namespace

class OperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void filters_data();
    void filters();
    void sortingAndExport();
    void openingReloadingAndClosing();
    void correctingOperations();
    void deletingUndoingAndTheTrash();
    void randomDeletionsCorrectionsAndReturns();
};

void OperationsTest::filters_data()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QString>("summary");
    QTest::newRow("everything, newest first, undated last")
        << Setup([](const Form&) {})
        << QStringList{"Расход 3", "Снятие 2", "Расход 2", "Поступление 1", "Расход 1", "Поступление 3"}
        << "Операций: 6    Сумма: 299,76 р.";
    QTest::newRow("dates inclusive; undated out") << Setup([](const Form& f) {
        setDate(f, "FromDate", QDate(2026, 3, 2));
        setDate(f, "ToDate", QDate(2026, 3, 5));
    }) << QStringList{"Расход 3", "Снятие 2", "Расход 2"}
                                                  << "Операций: 3    Сумма: -650,25 р.";
    QTest::newRow("kind") << Setup([](const Form& f) { f.choose("KindList", "Расход"); })
                          << QStringList{"Расход 3", "Расход 2", "Расход 1"}
                          << "Операций: 3    Сумма: -550,24 р.";
    QTest::newRow("account and purse") << Setup([](const Form& f) {
        f.choose("AccountList", "3 - Питание");
        f.choose("PurseList", "1 - Наличные");
    }) << QStringList{"Расход 2", "Расход 1"}
                                       << "Операций: 2    Сумма: -250,24 р.";
    QTest::newRow("amount's size, whatever its sign") << Setup([](const Form& f) {
        f.enter("AmountFrom", "150,25");
        f.enter("AmountTo", "300");
    }) << QStringList{"Расход 3", "Снятие 2", "Расход 2"}
                                                      << "Операций: 3    Сумма: -650,25 р.";
    QTest::newRow("text: case and ё alike, notes too")
        << Setup([](const Form& f) { f.enter("SearchText", "елк"); }) << QStringList{"Расход 3", "Расход 2"}
        << "Операций: 2    Сумма: -450,25 р.";
    QTest::newRow("text in a bank comment")
        << Setup([](const Form& f) { f.enter("SearchText", "ЗАРПЛАТ"); }) << QStringList{"Поступление 1"}
        << "Операций: 1    Сумма: 1 000,00 р.";
    QTest::newRow("a wrong amount is left out and said")
        << Setup([](const Form& f) { f.enter("AmountTo", "12,3,4"); })
        << QStringList{"Расход 3", "Снятие 2", "Расход 2", "Поступление 1", "Расход 1", "Поступление 3"}
        << "Операций: 6    Сумма: 299,76 р.    Сумма указана неверно: она не учитывается.";
}

void OperationsTest::filters()
{
    QFETCH(Setup, setup);
    QFETCH(QStringList, rows);
    QFETCH(QString, summary);
    WindowDriver w(household());
    QVERIFY(w.start());
    w.main().click("OperationsButton");
    const Form f(window(w));
    setup(f);
    QCOMPARE(shown(window(w)->model()), rows);
    QCOMPARE(f.text("Summary"), summary);
    w.expect({}, false);
}

void OperationsTest::sortingAndExport()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.main().click("OperationsButton");
    const OperationTableModel& model = window(w)->model();
    auto* list = window(w)->findChild<QTableView*>("OperationList");
    list->sortByColumn(OperationTableModel::Account, Qt::AscendingOrder);
    // Codes by value, not as text; the bank's empty account first, in the list's own order.
    QCOMPARE(column(model, OperationTableModel::Account),
             QStringList({"", "", "", "3 - Питание", "3 - Питание", "10 - Связь"}));
    QCOMPARE(shown(model).first(), QString("Снятие 2"));
    list->sortByColumn(OperationTableModel::Amount, Qt::DescendingOrder);
    QCOMPARE(column(model, OperationTableModel::Amount),
             QStringList({"1000", "50", "-99,99", "-150,25", "-200", "-300"}));

    QTemporaryDir dir;
    const QString path = dir.filePath("список.csv");
    window(w)->setSavePathQuestion(
        [&](const QString& suggested) { return suggested.endsWith("операции.csv") ? path : QString(); });
    Form(window(w)).click("ExportButton");
    QCOMPARE(w.newBoxes(), QStringList{"Операции: Список сохранен в файл " + path + "."});
    const QByteArray csv = contents(path);
    QVERIFY(csv.startsWith("\xEF\xBB\xBF"));
    const QList<QStringList> rows = parseCsv(QString::fromUtf8(csv.mid(3)));
    QCOMPARE(rows.size(), model.rowCount() + 1);
    QCOMPARE(rows[0].first(), QString("Дата"));
    for (int row = 0; row < model.rowCount(); ++row)
        for (int c = 0; c < OperationTableModel::ColumnCount; ++c)
            QCOMPARE(rows[row + 1].value(c), model.text(row, c));
    QCOMPARE(rows[3].value(OperationTableModel::Name), QString("Хлеб; \"Бородинский\""));
    QCOMPARE(rows[3].value(OperationTableModel::Date), QString("20.02.2026"));

    // A file that cannot be written is said, and nothing else happens.
    window(w)->setSavePathQuestion([&](const QString&) { return dir.filePath("нет/такой/папки.csv"); });
    Form(window(w)).click("ExportButton");
    const QStringList boxes = w.newBoxes();
    QVERIFY2(boxes.size() == 1 && boxes[0].startsWith("Ошибка: Не удалось сохранить файл"),
             qPrintable(boxes.join('\n')));
    w.expect({}, false);
}

void OperationsTest::openingReloadingAndClosing()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.frame().activateWindow(); // keys reach the program only in its active window
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    QTest::keyClick(w.main().control("T9"), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(window(w));
    QCOMPARE(window(w)->model().rowCount(), 6);
    // Booked in the main window while the list is open: shown when the list is active again.
    auto* mdi = w.frame().findChild<QMdiArea*>();
    mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(w.main().widget()->parentWidget()));
    w.main().enter("T9", "25");
    w.main().click("Command1");
    w.newBoxes();
    w.main().click("OperationsButton");
    QCOMPARE(window(w)->model().rowCount(), 7);
    QCOMPARE(shown(window(w)->model()).first(), QString("Снятие 4"));
    // Another program put an empty household in place of the file.
    ProgramFolder other;
    other.write(DataBuilder().database());
    writeBytes(w.folder().path() + "/" + store::kDataFileName, other.bytes());
    mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(w.main().widget()->parentWidget()));
    w.main().click("OperationsButton");
    QCOMPARE(window(w)->model().rowCount(), 0);
    QTest::keyClick(window(w)->findChild<QTableView*>("OperationList"), Qt::Key_Escape);
    QTRY_VERIFY(!window(w));
}

// A correction keeps the number and moves the money as a deletion and a new
// operation would; a wrong field is said and asked again; Cancel writes nothing.
void OperationsTest::correctingOperations()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.main().click("OperationsButton");
    auto* list = window(w)->findChild<QTableView*>("OperationList");
    QString bankAmountShown;
    QList<std::function<bool(const Form&)>> edits{
        [](const Form&) { return true; },  // nothing changed
        [](const Form&) { return false; }, // Cancel
        [](const Form& f) {
            f.enter("CorrectAmount", "сто");
            return true;
        },
        [](const Form& f) {
            f.enter("CorrectAmount", "120,5");
            f.enter("CorrectDate", "06.03.2026");
            f.choose("CorrectAccount", "3 - Питание");
            f.choose("CorrectPurse", "1 - Наличные");
            f.enter("CorrectName", "Телефон и интернет");
            return true;
        },
        [&](const Form& f) { // the withdrawal of 200 becomes a deposit of 500
            bankAmountShown = f.text("CorrectAmount");
            f.enter("CorrectAmount", "500");
            return true;
        }};
    window(w)->setCorrectionEditor(
        [&](operations::CorrectionDialog& dialog) { return edits.takeFirst()(Form(&dialog)); });
    list->setCurrentIndex(list->model()->index(0, 0)); // "Расход 3": 300 from purse 2 to account 10
    for (int press = 0; press < 2; ++press)
        QTest::keyClick(list, Qt::Key_Return);
    w.expect({}, false);
    Form(window(w)).click("CorrectButton");
    w.expect({"Ошибка: Необходимо вводить число!"}, true);
    QCOMPARE(w.rows("Bills").last(),
             QString("3 | 2026-03-06 | 3 | 120.5 | Телефон и интернет | за ЕЛКУ | 1"));
    QStringList purses = w.rows("Purse");
    purses.sort(); // a purse's row is written anew
    QCOMPARE(purses, QStringList({"1 | -120.5", "2 | 300"}));
    list->setCurrentIndex(list->model()->index(1, 0)); // "Снятие 2" under "Расход 3" of the 6th
    QCOMPARE(window(w)->model().text(1, OperationTableModel::Number), QString("2"));
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(bankAmountShown, QString("-200"));
    QCOMPARE(w.rows("Bank").filter(QRegularExpression("^2 ")),
             QStringList{"2 | 2026-03-05 | 500 | Снятие наличных"});
    // Whole money: 299,76 + 300 - 120,5 + 200 + 500.
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 1179.26 | NULL"});
    QCOMPARE(w.main().text("T11"), QString("999,76 р."));
    const QStringList copies = QDir(w.folder().path() + "/" + store::kCopiesFolderName).entryList({"*.mdb"});
    QCOMPARE(copies.filter("перед-исправлением-операции").size(), 2);
    QVERIFY(edits.isEmpty());
}

// Chosen operations go after one question (No changes nothing), with their
// money undone, in one save with one copy before it, into the trash: a table
// the file gets only then, which mdb-export reads. Ctrl+Z and "Восстановить"
// bring operations back with their money exactly, a newer version going to
// the trash in place of the one put back. The list prints as shown.
void OperationsTest::deletingUndoingAndTheTrash()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const QStringList before = everything([&w](const char* t) { return w.rows(t); });
    w.frame().activateWindow(); // keys reach the program only in its active window
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    w.main().click("OperationsButton");
    const Form f(window(w));
    auto* list = window(w)->findChild<QTableView*>("OperationList");
    QVERIFY(!f.enabled("UndoButton"));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, w.rows("Trash"));
    choose(list, {0, 1}); // "Расход 3" (300 from purse 2) and "Снятие 2" (-200)
    QTest::keyClick(list, Qt::Key_Delete);
    w.expect(
        {"ВНИМАНИЕ!!!: Удалить выбранные операции (2) на сумму -500,00 р.?\r\nДеньги в банке и в кошельках "
         "изменятся так, как будто этих операций не было. Копия файла до удаления сохраняется."},
        false);
    w.dialogs.answer(ui::DialogAnswer::Yes);
    f.click("DeleteButton");
    QCOMPARE(w.newBoxes().size(), 1);
    QCOMPARE(shown(window(w)->model()),
             QStringList({"Расход 2", "Поступление 1", "Расход 1", "Поступление 3"}));
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 799.76 | NULL"});
    QCOMPARE(w.rows("Purse"), QStringList({"1 | 0", "2 | 300"}));
    QCOMPARE(w.main().text("T11"), QString("499,76 р."));
    const QDir copies(w.folder().path() + "/" + store::kCopiesFolderName);
    QCOMPARE(copies.entryList({"*.mdb"}), copies.entryList({"*перед-удалением-операции.mdb"}));
    QCOMPARE(copies.entryList({"*.mdb"}).size(), 1);
    QCOMPARE(trashRows(w.rows("Trash")),
             QStringList(
                 {"1 | 1 | Bills | удалена | 3 | 2026-03-05 | 300 | 10 | Телефон | за ЕЛКУ | 2",
                  "2 | 1 | Bank | удалена | 2 | 2026-03-05 | -200 | NULL | Снятие наличных | NULL | NULL"}));
    expectMdbExportAgrees(w.folder());
    QVERIFY(f.enabled("UndoButton"));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Z, Qt::ControlModifier);
    w.expect({}, true);
    QCOMPARE(everything([&w](const char* t) { return w.rows(t); }), before);
    QCOMPARE(w.rows("Trash"), QStringList());
    QVERIFY(!f.enabled("UndoButton"));
    QCOMPARE(window(w)->model().rowCount(), 6);

    // A correction goes back through the trash; the corrected version takes its place there.
    window(w)->setCorrectionEditor([](operations::CorrectionDialog& dialog) {
        Form(&dialog).enter("CorrectAmount", "120,5");
        return true;
    });
    list->setCurrentIndex(list->model()->index(0, 0));
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(trashRows(w.rows("Trash")).last(),
             QString("3 | 3 | Bills | исправлена | 3 | 2026-03-05 | 300 | 10 | Телефон | за ЕЛКУ | 2"));
    QStringList shownInTrash;
    window(w)->setTrashViewer([&](operations::TrashDialog& dialog) {
        const Form trash(&dialog);
        shownInTrash << trash.text("TrashSummary");
        auto* entries = dialog.findChild<QTableWidget*>("TrashList");
        shownInTrash << entries->item(0, 1)->text() + " " +
                            entries->item(0, 2 + OperationTableModel::Amount)->text();
        entries->selectRow(0);
        trash.click("PutBackButton");
        shownInTrash << entries->item(0, 1)->text() + " " +
                            entries->item(0, 2 + OperationTableModel::Amount)->text();
    });
    f.click("TrashButton");
    QCOMPARE(shownInTrash, QStringList({"Операций в корзине: 1. Они хранятся 90 дней.", "исправлена -300",
                                        "заменена -120,5"}));
    w.expect({}, true);
    QCOMPARE(everything([&w](const char* t) { return w.rows(t); }), before);
    QCOMPARE(copies.entryList({"*перед-возвратом-из-корзины.mdb"}).size(), 1);
    // The correction is in the list no more: nothing left to undo.
    f.click("UndoButton");
    w.expect({"Ошибка: Отменять нечего: эти операции уже возвращены из корзины."}, false);

    f.choose("KindList", "Расход");
    f.enter("AmountFrom", "50");
    setDate(f, "ToDate", QDate(2026, 3, 31));
    std::optional<analytics::ReportDocument> printed;
    window(w)->setReportViewer([&](const analytics::ReportDocument& report) { printed = report; });
    f.click("PrintButton");
    QVERIFY(printed);
    QCOMPARE(printed->account, QString("по 31.03.2026, Вид: Расход, Сумма от 50"));
    QCOMPARE(printed->lines.size(), std::size_t(3));
    QCOMPARE(printed->lines.front(), QStringList({"05.03.2026", "-300", "Расход", "10 - Связь", "Телефон",
                                                  "за ЕЛКУ", "2 - Карта", "3"}));
    QCOMPARE(QStringList({printed->total, printed->count}), QStringList({"-550,24", "Операций: 3"}));

    // Another program replaced the file since the deletion: its undo would take back what is not there.
    list->selectRow(0);
    w.dialogs.answer(ui::DialogAnswer::Yes);
    f.click("DeleteButton");
    ProgramFolder other;
    other.write(household().database());
    writeBytes(w.folder().path() + "/" + store::kDataFileName, other.bytes());
    w.newBoxes();
    f.click("UndoButton");
    QCOMPARE(w.newBoxes(),
             QStringList{"Ошибка: Отменить нельзя: файл данных с тех пор заменен (восстановлен из "
                         "копии или изменен другой программой)."});
    QCOMPARE(w.bytes(), other.bytes());
    QVERIFY(!f.enabled("UndoButton"));
}

// Deletions of one to three operations, corrections, undos and returns of
// chosen entries in a seeded random order: after every step the money adds
// up as before, an undo leaves everything as before its action, and at the
// end mdb-export reads the file as we do. The trash forgets entries older
// than its days at the first write.
void OperationsTest::randomDeletionsCorrectionsAndReturns()
{
    std::mt19937 random(20261123);
    const auto pick = [&random](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    const auto amount = [&pick](int most) { return QString("%1,%2").arg(pick(most) + 1).arg(pick(100)); };
    DataBuilder d;
    d.balance("10000")
        .account(1, "Питание")
        .account(2, "Дом")
        .purse(1, "Наличные", "500")
        .purse(2, "Карта", "700");
    for (int i = 0; i < 30; ++i) {
        const QDate day = QDate(2026, 1, 1).addDays(pick(300));
        if (pick(2))
            d.bank(day, (pick(3) ? "" : "-") + amount(900), QString("банк %1").arg(i));
        else
            d.bill(day, 1 + pick(2), amount(300), 1 + pick(2))
                .named(QString("расход %1").arg(i), "примечание");
    }
    LedgerFile file(d);
    store::Store& s = file.store();
    {
        store::Transaction tx(s);
        for (const int days : {91, 89})
            tx.execute("INSERT INTO Trash (F1, F2, F3, F4, F5, F7) VALUES (?, ?, 'Bank', 'удалена', ?, 1)",
                       {QDateTime::currentDateTime().addDays(-days), -days, days});
        QVERIFY(tx.commit());
    }
    QCOMPARE(operations::Trash(s).list()->size(), std::size_t(1));
    const QStringList money = untouchedMoney(s);
    struct Undoable
    {
        std::int32_t action;
        std::uint64_t reading;
        QStringList before; // everything before the action
    };
    std::vector<Undoable> undoable;
    for (int step = 0; step < 150 && !QTest::currentTestFailed(); ++step) {
        const std::vector<operations::Operation> all = operations::Journal::read(s)->operations;
        const QStringList now = everything([&file](const char* t) { return file.rows(t); });
        const auto any = [&] { return all[static_cast<std::size_t>(pick(static_cast<int>(all.size())))]; };
        switch (all.empty() ? 3 : pick(4)) {
        case 0: {
            std::vector<operations::Operation> chosen{any()};
            while (pick(2) && chosen.size() < 3)
                chosen.push_back(any()); // one chosen twice is deleted once
            const store::Result<std::int32_t> done = operations::deleteOperations(s, chosen);
            QVERIFY(done);
            undoable.push_back({done.value(), s.readings(), now});
            break;
        }
        case 1: {
            const operations::Operation old = any();
            operations::Operation corrected = old;
            const bool expense = corrected.kind == operations::Operation::Kind::Expense;
            corrected.date = QDate(2026, 1, 1).addDays(pick(300));
            corrected.amount = *store::Amount::parse((expense || pick(3) ? "" : "-") + amount(500));
            corrected.name = QString("исправлено %1").arg(step);
            corrected.account = 1 + pick(2);
            corrected.purse = 1 + pick(2);
            const store::Result<std::int32_t> done = operations::correctOperation(s, old, corrected);
            QVERIFY(done);
            undoable.push_back({done.value(), s.readings(), now});
            break;
        }
        case 2:
            if (!undoable.empty()) {
                QVERIFY(operations::Trash(s).undo(undoable.back().action, undoable.back().reading));
                QCOMPARE(everything([&file](const char* t) { return file.rows(t); }), undoable.back().before);
                undoable.pop_back();
            }
            break;
        default: {
            const std::vector<operations::TrashEntry> entries = *operations::Trash(s).list();
            std::vector<std::int32_t> chosen;
            for (const operations::TrashEntry& entry : entries)
                if (entry.operation.number != 89 && pick(4) == 0)
                    chosen.push_back(entry.number);
            QVERIFY(operations::Trash(s).putBack(chosen));
            undoable.clear(); // what an undo would bring back may be back already
        }
        }
        QCOMPARE(untouchedMoney(s), money);
    }
    QCOMPARE(file.sink.engineErrors + file.sink.storeFailures, QStringList());
    const QStringList trash = fileRows(file.folder().path(), "Trash");
    QCOMPARE(trash.filter(" | Bank | удалена | 89 |").size(), 1);
    QCOMPARE(trash.filter(" | Bank | удалена | 91 |").size(), 0);
    store::Store again(file.folder().path());
    QCOMPARE(untouchedMoney(again), money);
    expectMdbExportAgrees(file.folder());
}

QTEST_MAIN(OperationsTest)
#include "OperationsTest.moc"
