// Automatic copies: the rotation rule over synthetic dates; every action
// that changes the file for good, driven through its window, leaves a copy
// equal to the file before it; a chosen copy is put back through "Копии…".
#include "store/Copies.h"
#include "WindowDriver.h"
#include "store/CopyRotation.h"
#include "store/Schema.h"

#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <functional>

using namespace velmora::test;
namespace fs = std::filesystem;

using Act = std::function<void(WindowDriver&)>;
Q_DECLARE_METATYPE(Act)

namespace {

const QDateTime kNow(QDate(2026, 11, 22), QTime(9, 30));

// The copies' names in the folder, newest first.
QStringList copyNames(const WindowDriver& w)
{
    return QDir(w.folder().path() + "/" + store::kCopiesFolderName)
        .entryList({"*.mdb"}, QDir::Files, QDir::Name | QDir::Reversed);
}

QByteArray copyBytes(const WindowDriver& w, const QString& name)
{
    return contents(w.folder().path() + "/" + store::kCopiesFolderName + "/" + name);
}

void data(DataBuilder& d)
{
    d.balance("700").account(3, "Питание").account(4, "Связь").purse(1, "Наличные", "10");
    d.bank(QDate(2026, 3, 6), "1000", "Зарплата").bill(QDate(2026, 3, 6), 3, "150,25");
}

void yes(WindowDriver& w)
{
    w.dialogs.answer(ui::DialogAnswer::Yes);
}

} // namespace

class CopiesTest : public QObject
{
    Q_OBJECT

private slots:
    void rotation_data();
    void rotation();
    void actionLeavesCopy_data();
    void actionLeavesCopy();
    void chosenCopyRestored();
    void copyThatCannotBeWrittenAsks();
};

void CopiesTest::rotation_data()
{
    QTest::addColumn<QList<int>>("daysAgo"); // one copy of 1 MB per entry
    QTest::addColumn<int>("limitMb");
    QTest::addColumn<QList<int>>("removed"); // their indexes
    QTest::newRow("two weeks all kept") << QList<int>{0, 0, 1, 13, 14} << 200 << QList<int>{};
    QTest::newRow("older: newest of each month")
        << QList<int>{15, 16, 40, 41, 300} << 200 << QList<int>{1, 3};
    QTest::newRow("a year ago to the day: still its month's") << QList<int>{365, 630} << 200 << QList<int>{};
    QTest::newRow("over a year: newest of each year")
        << QList<int>{400, 420, 800, 1200, 1300} << 200 << QList<int>{1, 4};
    QTest::newRow("size: the oldest go first") << QList<int>{0, 1, 2, 3} << 2 << QList<int>{2, 3};
    QTest::newRow("the newest stays whatever its size") << QList<int>{0, 1} << 0 << QList<int>{1};
}

void CopiesTest::rotation()
{
    QFETCH(QList<int>, daysAgo);
    QFETCH(int, limitMb);
    QFETCH(QList<int>, removed);
    std::vector<store::CopyFile> copies;
    for (int i = 0; i < daysAgo.size(); ++i)
        copies.push_back({std::to_string(i), kNow.addDays(-daysAgo[i]).addSecs(-i), 1 << 20});
    QList<int> got;
    for (const fs::path& path : store::copiesToRemove(copies, kNow, std::int64_t(limitMb) << 20))
        got.append(std::stoi(path.string()));
    std::ranges::sort(got);
    QCOMPARE(got, removed);
}

void CopiesTest::actionLeavesCopy_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("why");
    const auto service = [](std::function<void(WindowDriver&, const Form&)> act) {
        return Act([act](WindowDriver& w) { act(w, w.service()); });
    };
    QTest::newRow("clearing") << service([](WindowDriver& w, const Form& f) {
        f.click("Check1");
        yes(w);
        f.click("C16");
    }) << "перед-очисткой";
    QTest::newRow("deleting a bank operation") << service([](WindowDriver& w, const Form& f) {
        f.field("T12")->setText("06.03.2026");
        f.click("С12");
        f.list("Combo1")->setCurrentIndex(0);
        yes(w);
        f.click("C14");
    }) << "перед-удалением-операции";
    QTest::newRow("deleting an expense") << service([](WindowDriver& w, const Form& f) {
        f.field("T12")->setText("06.03.2026");
        f.click("С12");
        f.list("Combo2")->setCurrentIndex(0);
        yes(w);
        f.click("C15");
    }) << "перед-удалением-операции";
    QTest::newRow("moving expenses") << service([](WindowDriver& w, const Form& f) {
        f.choose("Combo1B", "3 - Питание");
        f.choose("Combo1C", "4 - Связь");
        yes(w);
        f.click("C3");
    }) << "перед-переносом-расходов";
    QTest::newRow("deleting an account") << service([](WindowDriver&, const Form& f) {
        f.choose("Combo1A", "4 - Связь");
        f.click("VC1A");
        f.click("VC3A");
    }) << "перед-удалением-счета";
    QTest::newRow("restoring the backup") << service([](WindowDriver& w, const Form& f) {
        ProgramFolder other;
        other.write(DataBuilder().balance("5").database());
        writeBytes(w.folder().path() + "/" + store::kBackupFileName, other.bytes());
        yes(w);
        f.click("C2");
    }) << "перед-восстановлением";
    QTest::newRow("deleting a purse") << Act([](WindowDriver& w) {
        w.main().choose("Combo1", "1 - Наличные");
        w.main().click("VC1");
        yes(w);
        w.main().click("VC3");
    }) << "перед-удалением-кошелька";
    QTest::newRow("any first change of the day") << service([](WindowDriver&, const Form& f) {
        f.enter("T7", "91");
        f.click("B7");
    }) << "начало-дня";
}

void CopiesTest::actionLeavesCopy()
{
    QFETCH(Act, act);
    QFETCH(QString, why);
    DataBuilder d;
    data(d);
    WindowDriver w(d);
    QVERIFY(w.start());
    const QByteArray before = w.bytes();
    // What a copy's writer left when its process died goes; a write of this process stays.
    const QString unfinished = w.folder().path() + "/" + store::kCopiesFolderName + "/velmora.mdb.tmp-%1-0";
    QDir().mkpath(w.folder().path() + "/" + store::kCopiesFolderName);
    for (const qint64 pid : {qint64(99999999), QCoreApplication::applicationPid()})
        writeBytes(unfinished.arg(pid), "partly written");
    act(w);
    QVERIFY2(w.bytes() != before, qPrintable(w.dialogs.shownTexts().join('\n')));
    store::Copies(w.frame().store()).finishPending(); // the day's copy is written beside the click
    QVERIFY(!QFile::exists(unfinished.arg(99999999)));
    QVERIFY(QFile::exists(unfinished.arg(QCoreApplication::applicationPid())));
    const QStringList names = copyNames(w);
    // One copy covers the day: no second one of the same file.
    QCOMPARE(names.size(), 1);
    QVERIFY2(names.front().startsWith("velmora-2026-03-15-") && names.front().endsWith("-" + why + ".mdb"),
             qPrintable(names.front()));
    QCOMPARE(copyBytes(w, names.front()), before);
}

void CopiesTest::chosenCopyRestored()
{
    DataBuilder d;
    data(d);
    WindowDriver w(d);
    QVERIFY(w.start());
    const QByteArray original = w.bytes();
    const Form f = w.service();
    f.choose("Combo1B", "3 - Питание");
    f.choose("Combo1C", "4 - Связь");
    yes(w);
    f.click("C3");
    const QByteArray moved = w.bytes();
    // A damaged copy is listed, but cannot be chosen.
    writeBytes(w.folder().path() + "/" + store::kCopiesFolderName + "/velmora-2026-01-01-0000-начало-дня.mdb",
               "not a data file");
    f.click("CopiesButton");
    auto* dialog = f.widget()->findChild<QDialog*>("CopiesDialog");
    QVERIFY(dialog);
    auto* list = dialog->findChild<QTableWidget*>("CopyList");
    QCOMPARE(list->rowCount(), 2);
    QCOMPARE(list->item(0, 1)->text(), QString("перед переносом расходов"));
    QCOMPARE(list->item(0, 2)->text(), QString("690,00 р."));
    QCOMPARE(list->item(0, 3)->text(), QString("2"));
    QVERIFY(list->item(1, 2)->text().startsWith("копия повреждена"));
    list->selectRow(1);
    QVERIFY(!dialog->findChild<QPushButton*>("RestoreCopy")->isEnabled());
    list->selectRow(0);
    yes(w);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(w.bytes(), original);
    // The restore itself can be undone: the file before it was kept.
    const QStringList names = copyNames(w);
    QCOMPARE(names.size(), 3);
    const QString kept =
        *std::ranges::find_if(names, [](const QString& n) { return n.contains("восстановлением"); });
    QCOMPARE(copyBytes(w, kept), moved);
}

// A file where the copies' folder should be: the copy fails, the user is
// asked, and the clearing goes ahead only if they agree.
void CopiesTest::copyThatCannotBeWrittenAsks()
{
    for (const bool goOn : {false, true}) {
        DataBuilder d;
        data(d);
        WindowDriver w(d);
        QVERIFY(w.start());
        writeBytes(w.folder().path() + "/" + store::kCopiesFolderName, "in the way");
        const QByteArray before = w.bytes();
        const Form f = w.service();
        f.click("Check1");
        yes(w);
        w.dialogs.answer(goOn ? ui::DialogAnswer::Yes : ui::DialogAnswer::No);
        f.click("C16");
        const QStringList shown = w.dialogs.shownTexts();
        QVERIFY2(shown.filter("Не удалось сохранить копию").size() == 1, qPrintable(shown.join('\n')));
        QVERIFY(shown.filter("Продолжить без копии?").size() == 1);
        QCOMPARE(w.bytes() != before, goOn);
    }
}

QTEST_MAIN(CopiesTest)
#include "CopiesTest.moc"
