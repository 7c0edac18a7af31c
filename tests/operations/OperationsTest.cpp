// The operations window on a small household: each filter narrows the list
// and its count and sum; columns sort as a reader expects; the export reads
// holds the list as shown; the window opens by its button and Ctrl+F, shows what
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

// The rows of the trash without the moment each was put in.
QStringList trashRows(const QStringList& rows)
{
    QStringList kept;
    for (const QString& row : rows)
        kept << row.section(" | ", 0, 0) + " | " + row.section(" | ", 2);
    return kept;
}

// What the operations, the trash and the money hold, rows in number order.
QStringList everything(LedgerFile& file)
{
    QStringList all;
    for (const char* table : {"Bank", "Bills", "Purse", "Tech"}) {
        QStringList sorted = file.rows(table);
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
    void filters();
    void sortingAndExport();
    void openingCorrectingAndClosing();
    void deletingUndoingAndTheTrash();
    void randomDeletionsCorrectionsAndReturns();
};

// Each row: the filter's fields as "name=value|…", then the list as "kind
// number, …" and the summary under it.
void OperationsTest::filters()
{
    const QString all = "Расход 3, Снятие 2, Расход 2, Поступление 1, Расход 1, Поступление 3 / ";
    const std::pair<QString, QString> cases[] = {
        {"", all + "Операций: 6    Сумма: 299,76 р."}, // newest first, undated last
        {"FromDate=02.03.2026|ToDate=05.03.2026",
         "Расход 3, Снятие 2, Расход 2 / Операций: 3    Сумма: -650,25 р."},
        {"KindList=Расход", "Расход 3, Расход 2, Расход 1 / Операций: 3    Сумма: -550,24 р."},
        {"AccountList=3 - Питание|PurseList=1 - Наличные",
         "Расход 2, Расход 1 / Операций: 2    Сумма: -250,24 р."},
        // The amount's size, whatever its sign.
        {"AmountFrom=150,25|AmountTo=300", "Расход 3, Снятие 2, Расход 2 / Операций: 3    Сумма: -650,25 р."},
        // Case and ё alike, in names, notes and bank comments.
        {"SearchText=елк", "Расход 3, Расход 2 / Операций: 2    Сумма: -450,25 р."},
        {"SearchText=ЗАРПЛАТ", "Поступление 1 / Операций: 1    Сумма: 1 000,00 р."},
        {"AmountTo=12,3,4",
         all + "Операций: 6    Сумма: 299,76 р.    Сумма указана неверно: она не учитывается."},
    };
    for (const auto& [fields, expected] : cases) {
        WindowDriver w(household());
        QVERIFY(w.start());
        w.main().click("OperationsButton");
        const Form f(window(w));
        w.act(f, fields);
        const QString got = shown(window(w)->model()).join(", ") + " / " + f.text("Summary");
        QVERIFY2(got == expected, qPrintable(fields + ": " + got));
        w.expect({}, false);
    }
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
    QStringList accounts;
    for (int row = 0; row < model.rowCount(); ++row)
        accounts << model.text(row, OperationTableModel::Account);
    QCOMPARE(accounts, QStringList({"", "", "", "3 - Питание", "3 - Питание", "10 - Связь"}));
    QCOMPARE(shown(model).first(), QString("Снятие 2"));
    // Texts that differ only in case are equal and keep the list's order, either way.
    std::vector<operations::Operation> cased;
    for (const char* name : {"хлеб", "Хлеб 10", "ХЛЕБ", "Хлеб 9", "Хлеб"})
        cased.push_back({operations::Operation::Kind::Deposit,
                         static_cast<int>(cased.size()) + 1,
                         QDate(2026, 3, 1),
                         store::Amount(),
                         0,
                         0,
                         QString::fromUtf8(name),
                         {}});
    OperationTableModel byName;
    byName.setJournal(operations::Journal(std::move(cased)), operations::Filter());
    for (const auto& [order, expected] : {std::pair{Qt::AscendingOrder, QString("1 3 5 4 2")},
                                          std::pair{Qt::DescendingOrder, QString("2 4 1 3 5")}}) {
        byName.sort(OperationTableModel::Name, order);
        QStringList numbers;
        for (int row = 0; row < byName.rowCount(); ++row)
            numbers << byName.text(row, OperationTableModel::Number);
        QCOMPARE(numbers.join(' '), expected);
    }
    // Amounts by value; the export holds the list as shown, quoted where a field needs it.
    list->sortByColumn(OperationTableModel::Amount, Qt::DescendingOrder);
    QTemporaryDir dir;
    const QString path = dir.filePath("список.csv");
    window(w)->setSavePathQuestion(
        [&](const QString& suggested) { return suggested.endsWith("операции.csv") ? path : QString(); });
    Form(window(w)).click("ExportButton");
    QCOMPARE(w.newBoxes(), QStringList{"Операции: Список сохранен в файл " + path + "."});
    QCOMPARE(
        contents(path),
        QByteArray("\xEF\xBB\xBF"
                   "Дата;Вид;Сумма;Счет;Комментарий;Примечание;Кошелек;N операции\r\n"
                   "01.03.2026;Поступление;1000;;Зарплата;;;1\r\n"
                   ";Поступление;50;;;;;3\r\n"
                   "20.02.2026;Расход;-99,99;3 - Питание;\"Хлеб; \"\"Бородинский\"\"\";;1 - Наличные;1\r\n"
                   "02.03.2026;Расход;-150,25;3 - Питание;Ёлка;праздник;1 - Наличные;2\r\n"
                   "05.03.2026;Снятие;-200;;Снятие наличных;;;2\r\n"
                   "05.03.2026;Расход;-300;10 - Связь;Телефон;за ЕЛКУ;2 - Карта;3\r\n"));

    // A file that cannot be written is said, and nothing else happens.
    window(w)->setSavePathQuestion([&](const QString&) { return dir.filePath("нет/такой/папки.csv"); });
    Form(window(w)).click("ExportButton");
    const QStringList boxes = w.newBoxes();
    QVERIFY2(boxes.size() == 1 && boxes[0].startsWith("Ошибка: Не удалось сохранить файл"),
             qPrintable(boxes.join('\n')));
    w.expect({}, false);
}

// Ctrl+F opens the list. A correction keeps the number and moves the money as
// a deletion and a new operation would; a wrong field is said and asked
// again; an unchanged one and Cancel write nothing. What the main window
// books meanwhile shows when the list is active again; Esc closes it.
void OperationsTest::openingCorrectingAndClosing()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.frame().activateWindow(); // keys reach the program only in its active window
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    QTest::keyClick(w.main().control("T9"), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(window(w));
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
    list->setCurrentIndex(list->model()->index(1, 0)); // "Снятие 2" under "Расход 3" of the 6th
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(bankAmountShown, QString("-200"));
    QCOMPARE(w.rows("Bank").filter(QRegularExpression("^2 ")),
             QStringList{"2 | 2026-03-05 | 500 | Снятие наличных"});
    QCOMPARE(w.main().text("T11"), QString("999,76 р.")); // 299,76 + 200 + 500
    QCOMPARE(w.copies().entryList({"*перед-исправлением-операции*.mdb"}).size(), 2);
    QVERIFY(edits.isEmpty());

    auto* mdi = w.frame().findChild<QMdiArea*>();
    mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(w.main().widget()->parentWidget()));
    w.act(w.main(), "T9=25|Command1");
    w.newBoxes();
    w.main().click("OperationsButton");
    QCOMPARE(window(w)->model().rowCount(), 7);
    QCOMPARE(shown(window(w)->model()).first(), QString("Снятие 5"));
    QTest::keyClick(list, Qt::Key_Escape);
    QTRY_VERIFY(!window(w));
}

// Chosen operations go after one question (No changes nothing), in one save
// with one copy before it, into the trash. Ctrl+Z and "Восстановить" bring
// operations back, a newer version going to the trash in place of the one
// put back. The list prints as shown. An undo is refused once another
// program replaced the file.
void OperationsTest::deletingUndoingAndTheTrash()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.frame().activateWindow(); // keys reach the program only in its active window
    QVERIFY(QTest::qWaitForWindowActive(&w.frame()));
    w.main().click("OperationsButton");
    const Form f(window(w));
    auto* list = window(w)->findChild<QTableView*>("OperationList");
    QVERIFY(!f.enabled("UndoButton"));
    for (const int row : {0, 1}) // "Расход 3" (300 from purse 2) and "Снятие 2" (-200)
        list->selectionModel()->select(list->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(list, Qt::Key_Delete);
    w.expect(
        {"ВНИМАНИЕ!!!: Удалить выбранные операции (2) на сумму -500,00 р.?\r\nДеньги в банке и в кошельках "
         "изменятся так, как будто этих операций не было. Копия файла до удаления сохраняется."},
        false);
    w.act(f, "yes|DeleteButton");
    QCOMPARE(w.newBoxes().size(), 1);
    QCOMPARE(shown(window(w)->model()),
             QStringList({"Расход 2", "Поступление 1", "Расход 1", "Поступление 3"}));
    const QStringList made = w.copies().entryList({"*.mdb"});
    QVERIFY2(made.size() == 1 && made[0].endsWith("-перед-удалением-операции.mdb"),
             qPrintable(made.join(", ")));
    QCOMPARE(trashRows(w.rows("Trash")),
             QStringList(
                 {"1 | 1 | Bills | удалена | 3 | 2026-03-05 | 300 | 10 | Телефон | за ЕЛКУ | 2",
                  "2 | 1 | Bank | удалена | 2 | 2026-03-05 | -200 | NULL | Снятие наличных | NULL | NULL"}));
    QVERIFY(f.enabled("UndoButton"));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Z, Qt::ControlModifier);
    w.expect({}, true);
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
    QCOMPARE(w.main().texts({"T10", "T11"}), QStringList({"0,00 р.", "299,76 р."}));
    QCOMPARE(w.copies().entryList({"*перед-возвратом-из-корзины.mdb"}).size(), 1);
    // The correction is in the list no more: nothing left to undo.
    f.click("UndoButton");
    w.expect({"Ошибка: Отменять нечего: эти операции уже возвращены из корзины."}, false);

    w.act(f, "KindList=Расход|AmountFrom=50|ToDate=31.03.2026");
    std::optional<analytics::ReportDocument> printed;
    window(w)->setReportViewer([&](const analytics::ReportDocument& report) { printed = report; });
    f.click("PrintButton");
    QVERIFY(printed);
    QCOMPARE(printed->account, QString("по 31.03.2026, Вид: Расход, Сумма от 50"));
    QCOMPARE(printed->lines.size(), std::size_t(3));
    QCOMPARE(printed->lines.front(), QStringList({"05.03.2026", "-300", "Расход", "10 - Связь", "Телефон",
                                                  "за ЕЛКУ", "2 - Карта", "3"}));
    QCOMPARE(QStringList({printed->total, printed->count}), QStringList({"-550,24", "Операций: 3"}));

    // Another program replaced the file since the deletions: their undo would take back what is not there.
    for (int deletion = 0; deletion < 2; ++deletion) {
        list->selectRow(0);
        w.act(f, "yes|DeleteButton");
    }
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
    QCOMPARE(window(w)->model().rowCount(), 3); // the list shows the file as it is now
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
        const std::optional<operations::Journal> all = operations::Journal::read(s);
        const QStringList now = everything(file);
        const auto any = [&] {
            return all->at(static_cast<std::size_t>(pick(static_cast<int>(all->size()))));
        };
        switch (all->size() == 0 ? 3 : pick(4)) {
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
                QCOMPARE(everything(file), undoable.back().before);
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
