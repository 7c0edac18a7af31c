// Automatic copies: the rotation rule over synthetic dates; every action
// that changes the file for good, driven through its window, leaves a copy
// equal to the file before it (that very file under a second name, unless it
// is the day's copy written beside the click); a chosen copy is put back
// through "Копии…".
#include "store/Copies.h"
#include "WindowDriver.h"
#include "jet/Writer.h"
#include "service/ui/CopiesDialog.h"
#include "store/CopyRotation.h"
#include "store/Schema.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"

#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace velmora::test;
namespace fs = std::filesystem;

namespace {

const QDateTime kNow(QDate(2026, 11, 22), QTime(9, 30));

DataBuilder household()
{
    DataBuilder d;
    d.balance("700").account(3, "Питание").account(4, "Связь").purse(1, "Наличные", "10");
    d.bank(QDate(2026, 3, 6), "1000", "Зарплата").bill(QDate(2026, 3, 6), 3, "150,25");
    return d;
}

ino_t inodeOf(const QString& path)
{
    struct stat st
    {
    };
    return ::stat(path.toLocal8Bit().constData(), &st) == 0 ? st.st_ino : 0;
}

} // namespace

class CopiesTest : public QObject
{
    Q_OBJECT

private slots:
    void rotation();
    void actionLeavesCopy();
    void chosenCopyRestored();
    void copyThatCannotBeWrittenAsks();
    void copyOnAnotherFileSystemIsWritten();
    void copyOfAFileReplacedMeanwhileIsTheOneHeld();
};

// One copy of 1 MB per age in days; the indexes of those that go.
void CopiesTest::rotation()
{
    struct Case
    {
        const char* what;
        QList<int> daysAgo;
        int limitMb;
        QList<int> removed;
    };
    const Case cases[] = {
        {"two weeks all kept", {0, 0, 1, 13, 14}, 200, {}},
        {"older: newest of each month", {15, 16, 40, 41, 300}, 200, {1, 3}},
        {"a year ago to the day: still its month's", {365, 630}, 200, {}},
        {"over a year: newest of each year", {400, 420, 800, 1200, 1300}, 200, {1, 4}},
        {"size: the oldest go first", {0, 1, 2, 3}, 2, {2, 3}},
        {"the newest stays whatever its size", {0, 1}, 0, {1}},
    };
    for (const Case& c : cases) {
        std::vector<store::CopyFile> copies;
        for (int i = 0; i < c.daysAgo.size(); ++i)
            copies.push_back({std::to_string(i), kNow.addDays(-c.daysAgo[i]).addSecs(-i), 1 << 20});
        QList<int> got;
        for (const fs::path& path : store::copiesToRemove(copies, kNow, std::int64_t(c.limitMb) << 20))
            got.append(std::stoi(path.string()));
        std::ranges::sort(got);
        QVERIFY2(got == c.removed, c.what);
    }
}

// Each action that changes the file for good, through its window's controls
// (the main window's for a purse, else the service window's): one copy, named
// for the day and the action, equal to the file before it.
void CopiesTest::actionLeavesCopy()
{
    const std::tuple<bool, const char*, const char*> cases[] = {
        {false, "перед-очисткой", "Check1|yes|C16"},
        {false, "перед-удалением-операции", "T12=06.03.2026|С12|Combo1=1|yes|C14"}, // a bank operation
        {false, "перед-удалением-операции", "T12=06.03.2026|С12|Combo2=1|yes|C15"}, // an expense
        {false, "перед-переносом-расходов", "Combo1B=3 - Питание|Combo1C=4 - Связь|yes|C3"},
        {false, "перед-удалением-счета", "Combo1A=4 - Связь|VC1A|VC3A"},
        {false, "перед-восстановлением", "yes|C2"},
        {true, "перед-удалением-кошелька", "Combo1=1 - Наличные|VC1|yes|VC3"},
        {false, "начало-дня", "T7=91|B7"}, // any first change of the day
    };
    for (const auto& [inMain, why, steps] : cases) {
        WindowDriver w(household());
        QVERIFY(w.start());
        const QByteArray before = w.bytes();
        const QString dataFile = QString::fromStdString(w.folder().dataFile().string());
        const ino_t fileBefore = inodeOf(dataFile);
        ProgramFolder backup;
        backup.write(DataBuilder().balance("5").database());
        writeBytes(w.folder().path() + "/" + store::kBackupFileName, backup.bytes());
        // What a copy's writer left when its process died goes; a write of this process stays.
        const QString unfinished = w.copies().filePath("velmora.mdb.tmp-%1-0");
        QDir().mkpath(w.copies().path());
        for (const qint64 pid : {qint64(99999999), QCoreApplication::applicationPid()})
            writeBytes(unfinished.arg(pid), "partly written");
        w.act(inMain ? w.main() : w.service(), steps);
        QVERIFY2(w.bytes() != before, qPrintable(QString(steps) + ": " + w.dialogs.shownTexts().join('\n')));
        store::Copies(w.frame().store()).finishPending(); // the day's copy is written beside the click
        QVERIFY(!QFile::exists(unfinished.arg(99999999)));
        QVERIFY(QFile::exists(unfinished.arg(QCoreApplication::applicationPid())));
        // One copy covers the day: no second one of the same file.
        const QStringList names = w.copies().entryList({"*.mdb"});
        QVERIFY2(names.size() == 1 && names.front().startsWith("velmora-2026-03-15-") &&
                     names.front().endsWith(QString("-") + why + ".mdb"),
                 qPrintable(QString(steps) + ": " + names.join(", ")));
        QCOMPARE(contents(w.copies().filePath(names.front())), before);
        QVERIFY(inodeOf(dataFile) != fileBefore);
        if (QString(why) != "начало-дня") // the file before, kept alive by its second name
            QCOMPARE(inodeOf(w.copies().filePath(names.front())), fileBefore);
    }
}

void CopiesTest::chosenCopyRestored()
{
    WindowDriver w(household());
    QVERIFY(w.start());
    const QByteArray original = w.bytes();
    const Form f = w.service();
    w.act(f, "Combo1B=3 - Питание|Combo1C=4 - Связь|yes|C3");
    // A damaged copy is listed, but cannot be chosen; so is one with an
    // expense the store cannot take (its operations are checked, not loaded).
    writeBytes(w.copies().filePath("velmora-2026-01-01-0000-начало-дня.mdb"), "not a data file");
    DataBuilder spoilt = household();
    spoilt.database().table(u"Bills")->rows[0][1] = jet::DateTime{-1e7};
    const std::vector<std::uint8_t> spoiltBytes = jet::encodeDatabase(spoilt.database());
    writeBytes(w.copies().filePath("velmora-2025-12-31-0000-начало-дня.mdb"),
               QByteArray(reinterpret_cast<const char*>(spoiltBytes.data()), qsizetype(spoiltBytes.size())));
    writeBytes(w.copies().filePath("velmora-2025-12-30-0000-начало-дня.mdb"), original);
    // The list opens at once; the copies are read on a worker thread, and
    // none can be chosen before it is judged. The newest sound copy is chosen
    // and stays chosen as older ones come in. The second time they are known.
    service::CopiesDialog* dialog = nullptr;
    QTableWidget* list = nullptr;
    for (const bool known : {false, true}) {
        delete dialog;
        f.click("CopiesButton");
        dialog = f.widget()->findChild<service::CopiesDialog*>("CopiesDialog");
        QVERIFY(dialog);
        list = dialog->findChild<QTableWidget*>("CopyList");
        QCOMPARE(list->rowCount(), 4);
        QCOMPARE(dialog->allJudged(), known);
        QCOMPARE(list->item(0, 2)->text() == "проверяется…", !known);
        QCOMPARE(dialog->findChild<QPushButton*>("RestoreCopy")->isEnabled(), known);
        QSignalSpy judged(dialog, &service::CopiesDialog::allCopiesJudged);
        QVERIFY(dialog->allJudged() || judged.wait(60'000));
        QCOMPARE(judged.count(), known ? 0 : 1); // said once, when the last copy is in
        QCOMPARE(QStringList({list->item(0, 1)->text(), list->item(0, 2)->text(), list->item(0, 3)->text()}),
                 QStringList({"перед переносом расходов", "690,00 р.", "2"}));
        QVERIFY(list->item(1, 2)->text().startsWith("копия повреждена"));
        QVERIFY2(list->item(2, 2)->text().contains(store::texts::causeValueNotAccepted),
                 qPrintable(list->item(2, 2)->text()));
        QCOMPARE(QStringList({list->item(3, 1)->text(), list->item(3, 2)->text(), list->item(3, 3)->text()}),
                 QStringList({"начало дня", "690,00 р.", "2"}));
        QCOMPARE(list->selectionModel()->selectedRows().value(0).row(), 0);
        QVERIFY(dialog->findChild<QPushButton*>("RestoreCopy")->isEnabled());
    }
    list->selectRow(1);
    QVERIFY(!dialog->findChild<QPushButton*>("RestoreCopy")->isEnabled());
    list->selectRow(0);
    w.dialogs.answer(ui::DialogAnswer::Yes);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(w.bytes(), original);
}

// A file where the copies' folder should be: the copy fails, the user is
// asked, and the clearing goes ahead only if they agree.
void CopiesTest::copyThatCannotBeWrittenAsks()
{
    for (const bool goOn : {false, true}) {
        WindowDriver w(household());
        QVERIFY(w.start());
        writeBytes(w.copies().path(), "in the way");
        const QByteArray before = w.bytes();
        const Form f = w.service();
        w.act(f, "Check1|yes");
        w.dialogs.answer(goOn ? ui::DialogAnswer::Yes : ui::DialogAnswer::No);
        f.click("C16");
        const QStringList shown = w.dialogs.shownTexts();
        QVERIFY2(shown.filter("Не удалось сохранить копию").size() == 1, qPrintable(shown.join('\n')));
        QVERIFY(shown.filter("Продолжить без копии?").size() == 1);
        QCOMPARE(w.bytes() != before, goOn);
    }
}

// The copies' folder on another file system, where the data file can have
// no second name: the copy is written instead.
void CopiesTest::copyOnAnotherFileSystemIsWritten()
{
    QTemporaryDir elsewhere(QStringLiteral("/dev/shm/velmora-copies-XXXXXX"));
    WindowDriver w(household());
    QVERIFY(w.start());
    struct stat here
    {
    }, there{};
    if (!elsewhere.isValid() || ::stat(elsewhere.path().toLocal8Bit().constData(), &there) != 0 ||
        ::stat(w.folder().path().toLocal8Bit().constData(), &here) != 0 || here.st_dev == there.st_dev)
        QSKIP("no second file system at /dev/shm");
    QVERIFY(QFile::link(elsewhere.path(), w.copies().path()));
    const QByteArray before = w.bytes();
    w.act(w.service(), "Check1|yes|C16");
    QVERIFY(w.bytes() != before);
    const QStringList names = w.copies().entryList({"*.mdb"});
    QCOMPARE(names.size(), 1);
    QCOMPARE(contents(w.copies().filePath(names.front())), before);
}

// Another program puts another file in the data file's place while an action
// runs: the copy is the file the store holds, written, not the newcomer.
void CopiesTest::copyOfAFileReplacedMeanwhileIsTheOneHeld()
{
    ProgramFolder folder, other;
    folder.write(household().database());
    other.write(DataBuilder().balance("5").database());
    const QByteArray held = folder.bytes();
    store::Store store(folder.path());
    store.keepCopies([] { return kNow; });
    store::Transaction tx(store);
    writeBytes(folder.dataFilePath(), other.bytes());
    QVERIFY(store::Copies(store).before(store::CopyReason::Clearing));
    const QDir copies(folder.path() + "/" + store::kCopiesFolderName);
    const QStringList names = copies.entryList({"*.mdb"});
    QCOMPARE(names.size(), 1);
    QCOMPARE(contents(copies.filePath(names.front())), held);
}

QTEST_MAIN(CopiesTest)
#include "CopiesTest.moc"
