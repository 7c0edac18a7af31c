// The operations window on a small household: each filter narrows the list
// and its count and sum; columns sort as a reader expects; the export reads
// back as the list; the window opens by its button and Ctrl+F, shows what
// was booked meanwhile when it is active again, and closes with Esc.
#include "WindowDriver.h"
#include "operations/OperationTableModel.h"
#include "operations/ui/CorrectionDialog.h"
#include "operations/ui/OperationsWindow.h"
#include "store/Schema.h"

#include <QDateEdit>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

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

} // namespace

class OperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void filters_data();
    void filters();
    void sortingAndExport();
    void openingReloadingAndClosing();
    void deletingChosenOperations();
    void correctingOperations();
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

// Two chosen operations go after one question, with their money undone, in
// one save with one copy before it; No changes nothing.
void OperationsTest::deletingChosenOperations()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    w.main().click("OperationsButton");
    auto* list = window(w)->findChild<QTableView*>("OperationList");
    for (const int row : {0, 1}) // "Расход 3" (300 from purse 2) and "Снятие 2" (-200)
        list->selectionModel()->select(list->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(list, Qt::Key_Delete);
    w.expect(
        {"ВНИМАНИЕ!!!: Удалить выбранные операции (2) на сумму -500,00 р.?\r\nДеньги в банке и в кошельках "
         "изменятся так, как будто этих операций не было. Копия файла до удаления сохраняется."},
        false);
    w.dialogs.answer(ui::DialogAnswer::Yes);
    Form(window(w)).click("DeleteButton");
    QCOMPARE(w.newBoxes().size(), 1);
    QCOMPARE(shown(window(w)->model()),
             QStringList({"Расход 2", "Поступление 1", "Расход 1", "Поступление 3"}));
    QCOMPARE(w.rows("Tech").filter("OSTATOK"), QStringList{"OSTATOK | NULL | 799.76 | NULL"});
    QCOMPARE(w.rows("Purse"), QStringList({"1 | 0", "2 | 300"}));
    QCOMPARE(w.main().text("T11"), QString("499,76 р."));
    const QStringList copies = QDir(w.folder().path() + "/" + store::kCopiesFolderName).entryList({"*.mdb"});
    QCOMPARE(copies.size(), 1);
    QVERIFY(copies.front().endsWith("перед-удалением-операции.mdb"));
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

QTEST_MAIN(OperationsTest)
#include "OperationsTest.moc"
