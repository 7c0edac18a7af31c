#include "service/Backup.h"
#include "LedgerFile.h"
#include "jet/Reader.h"
#include "jet/Writer.h"
#include "service/ServiceTexts.h"
#include "store/AtomicFile.h"
#include "store/FileError.h"
#include "store/FileLock.h"
#include "store/Schema.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"
#include "support/ChildProcess.h"
#include "support/FaultyDisk.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <cerrno>
#include <csignal>
#include <functional>
#include <optional>

using namespace velmora::test;
using service::Backup;

namespace {

const QDate kBackupDay(2026, 3, 15);

QByteArray encoded(const jet::Database& db)
{
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

// A writer that fails the way a full disk does, before anything is renamed.
void diskFull(const std::filesystem::path& path, std::span<const std::uint8_t>, const store::BeforeReplacing&)
{
    throw store::FileError::writing(path, "write", ENOSPC);
}

QString message(const char* pattern, const QString& path, const QString& cause = {})
{
    const QString text = QString::fromUtf8(pattern);
    return cause.isEmpty() ? text.arg(path) : text.arg(path, cause);
}

// A data file with enough rows that saving it takes a while, marked by the
// name of its only account.
DataBuilder marked(const QString& account)
{
    DataBuilder data;
    data.account(1, account);
    for (int i = 0; i < 1000; ++i)
        data.bank(QDate(2026, 1, 1).addDays(i % 300), QString::number(i), QString("операция %1").arg(i));
    return data;
}

// The account name of a data file, or why it is not one.
std::string markOf(const QByteArray& bytes)
{
    try {
        const jet::Database db = jet::readDatabase({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                                    static_cast<std::size_t>(bytes.size())},
                                                   store::kFilePassword);
        return QString::fromStdU16String(std::get<std::u16string>(db.table(u"Bills_Dict")->rows.at(0).at(1)))
            .toStdString();
    } catch (const std::exception& e) {
        return e.what();
    }
}

// Runs `work` (a store and a backup on the program folder, both writing
// through `ops`) in a child that dies at system call 1, 2, … in turn, the files
// put back by `reset` before each run, and calls `check` after it; the last
// run is the one that finishes.
void killAtEveryCall(const std::function<void(store::Store&, service::Backup&)>& work, const QString& dir,
                     const std::function<void()>& reset, const std::function<void(int killAt)>& check)
{
    for (int killAt = 1;; ++killAt) {
        reset();
        ChildProcess child([&](ChildProcess&) {
            FaultyDisk ops(killedAt(killAt));
            const store::FileWriter writer = [&](const std::filesystem::path& path,
                                                 std::span<const std::uint8_t> bytes,
                                                 const store::BeforeReplacing& beforeReplacing) {
                store::writeFileAtomically(path, bytes, ops, beforeReplacing);
            };
            store::Store store(dir, nullptr, writer);
            service::Backup backup(store, writer);
            work(store, backup);
        });
        const int ended = child.finish();
        ASSERT_TRUE(ended == 0 || ended == 128 + SIGKILL) << "call " << killAt << ": " << ended;
        check(killAt);
        if (ended == 0)
            return;
    }
}

} // namespace

// The backup is the data file right after its date is recorded. A restore
// brings it back to the same store at once, and work goes on from there: the
// next operation is numbered after the backup's and reaches the file. A
// backup that cannot be written, or whose date cannot be recorded, leaves the
// old backup and its date.
TEST(Backup, RestoreBringsBackWhatTheBackupHeldAndWorkGoesOn)
{
    LedgerFile d(DataBuilder().balance("1000").bank(QDate(2026, 3, 1), "1000"));
    Backup backup(d.store());
    ASSERT_TRUE(backup.make(QDate(2026, 3, 1)));
    const QByteArray oldBackup = contents(d.backupPath());
    EXPECT_EQ(oldBackup, d.folder().bytes());
    const QStringList bankAtBackup = d.rows("Bank");
    ASSERT_TRUE(execute(d.store(), "INSERT INTO Bank (F1, F2, F3) VALUES ('2026-03-20', 500000, 'после')"));
    const store::Result<QDate> restored = backup.restore(kBackupDay);
    ASSERT_TRUE(restored) << restored.message().toStdString();
    EXPECT_EQ(d.rows("Bank"), bankAtBackup);
    ASSERT_TRUE(execute(d.store(), "INSERT INTO Bank (F1, F2, F3) VALUES ('2026-03-22', 70000, 'снова')"));
    store::Store reader(d.folder().path());
    EXPECT_EQ(lookupValue(reader, "Bank", "F3", "F0 = 2"), QVariant(QString("снова")));
    EXPECT_TRUE(d.sink.messages.isEmpty()) << d.sink.messages.join('\n').toStdString();

    const store::Result<QDate> made = Backup(d.store(), diskFull).make(kBackupDay);
    EXPECT_TRUE(made.isRefused());
    EXPECT_EQ(made.message(), message(service::texts::backupNotWritten, d.backupPath(),
                                      QString::fromUtf8(store::texts::causeNoSpace)));
    store::FileLock other(d.folder().dataFilePath().toStdString());
    other.take();
    const store::Result<QDate> locked = backup.make(kBackupDay);
    EXPECT_FALSE(locked || locked.isRefused());
    EXPECT_EQ(d.sink.messages.size(), 1); // the store said why
    other.release();
    EXPECT_EQ(contents(d.backupPath()), oldBackup);
    EXPECT_EQ(backup.lastBackupDate(), QDate(2026, 3, 1));
    // Another household's file is not the data file with some rows changed: it is loaded whole.
    DataBuilder elsewhere;
    elsewhere.balance("5").bank(QDate(2026, 2, 2), "5").database().creationDate = 40000;
    writeBytes(d.backupPath(), encoded(elsewhere.database()));
    ASSERT_TRUE(backup.restore(kBackupDay));
    EXPECT_EQ(d.rows("Bank"), LedgerFile(elsewhere).rows("Bank"));
}

// A restore that cannot put the backup in place says why and changes nothing.
TEST(Backup, RestoreRefusesWhatItCannotPutInPlaceAndChangesNothing)
{
    DataBuilder other;
    other.database().password = u"другой";
    DataBuilder data;
    data.account(1, "Питание").bank(QDate(2026, 3, 1), "10");
    std::optional<store::FileLock> lock;
    using namespace service::texts;
    struct Case
    {
        const char* what;
        std::function<void(LedgerFile&)> prepare;
        const char* pattern;
        const char* cause = "";
        bool ofDataFile = false;
        store::FileWriter writer = store::atomicWriter();
    };
    const auto backedUp = [](LedgerFile& d) { ASSERT_TRUE(Backup(d.store()).make(kBackupDay)); };
    const Case cases[] = {
        {"no backup", [](LedgerFile&) {}, backupMissing},
        {"another password", [&](LedgerFile& d) { writeBytes(d.backupPath(), encoded(other.database())); },
         backupDamaged, causeOtherPassword},
        {"cut short", [&](LedgerFile& d) { writeBytes(d.backupPath(), encoded(data.database()).left(6000)); },
         backupDamaged, store::texts::causeFileCutShort},
        {"a folder", [](LedgerFile& d) { QDir().mkdir(d.backupPath()); }, backupDamaged,
         store::texts::causeNotRegular},
        {"disk full", backedUp, store::texts::cannotWrite, store::texts::causeNoSpace, true, diskFull},
        {"locked by another program",
         [&](LedgerFile& d) {
             backedUp(d);
             lock.emplace(d.folder().dataFilePath().toStdString());
             lock->take();
         },
         store::texts::fileLocked, "", true},
    };
    for (const Case& c : cases) {
        LedgerFile d(data);
        c.prepare(d);
        const QByteArray before = d.folder().bytes();
        const store::Result<QDate> outcome = Backup(d.store(), c.writer).restore(kBackupDay);
        EXPECT_TRUE(outcome.isRefused()) << c.what;
        EXPECT_EQ(outcome.message(),
                  message(c.pattern, c.ofDataFile ? d.folder().dataFilePath() : d.backupPath(),
                          QString::fromUtf8(c.cause)))
            << c.what;
        lock.reset();
        EXPECT_EQ(d.folder().bytes(), before) << c.what;
        EXPECT_EQ(d.rows("Bills_Dict"), QStringList({"1|Питание"})) << c.what;
    }
}

// Restoring the backup, and restoring a chosen automatic copy (which first
// copies the data file as it stands into the copies' folder).
TEST(BackupCrash, AKilledRestoreLeavesTheOldOrTheRestoredDataFile)
{
    for (const bool chosenCopy : {false, true}) {
        SCOPED_TRACE(chosenCopy ? "a chosen copy" : "the backup");
        ProgramFolder folder;
        const QDir copies(QDir(folder.path()).filePath(store::kCopiesFolderName));
        const QString source = chosenCopy ? copies.filePath("velmora-2026-03-01-0900-начало-дня.mdb")
                                          : QDir(folder.path()).filePath(store::kBackupFileName);
        folder.write(marked("прежний").database());
        const QByteArray old = folder.bytes();
        folder.write(marked("из копии").database());
        const QByteArray restored = folder.bytes();
        ASSERT_TRUE(!chosenCopy || QDir().mkpath(copies.path()));
        writeBytes(source, restored);
        const auto reset = [&] {
            folder.writeBytes(old);
            for (const QString& name : copies.entryList(QDir::Files))
                if (copies.filePath(name) != source)
                    QFile::remove(copies.filePath(name));
        };
        const auto work = [&](store::Store& store, service::Backup& backup) {
            if (chosenCopy) {
                store.keepCopies([] { return QDateTime(kBackupDay, QTime(10, 0)); });
                backup.restoreCopy(source, kBackupDay);
            } else {
                backup.restore(kBackupDay);
            }
        };
        int oldSeen = 0;
        int newSeen = 0;
        killAtEveryCall(work, folder.path(), reset, [&](int killAt) {
            const std::string mark = markOf(folder.bytes());
            ASSERT_TRUE(mark == "прежний" || mark == "из копии") << "call " << killAt << ": " << mark;
            (mark == "прежний" ? oldSeen : newSeen)++;
            ASSERT_EQ(contents(source), restored) << "the restored file itself is never touched";
            // The next start opens the file and clears what the killed write left.
            store::Store next(folder.path());
            ASSERT_TRUE(opens(next));
            EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{chosenCopy ? store::kCopiesFolderName
                                                                               : store::kBackupFileName});
        });
        EXPECT_GT(oldSeen, 5);
        EXPECT_GT(newSeen, 0);
        if (chosenCopy) {
            // The completed restore kept the file it replaced, so it can be undone.
            const QStringList kept = copies.entryList({"*перед-восстановлением*"}, QDir::Files);
            ASSERT_EQ(kept.size(), 1);
            EXPECT_EQ(contents(copies.filePath(kept.front())), old);
        }
    }
}

TEST(BackupCrash, AKilledBackupLeavesEachFileOldOrNew)
{
    ProgramFolder folder;
    const QString backupPath = QDir(folder.path()).filePath(store::kBackupFileName);
    folder.write(marked("копия прошлая").database());
    const QByteArray oldBackup = folder.bytes();
    folder.write(marked("данные").database());
    const QByteArray oldData = folder.bytes();
    const auto reset = [&] {
        folder.writeBytes(oldData);
        writeBytes(backupPath, oldBackup);
    };
    int backupsDone = 0;
    int backupsOld = 0;
    killAtEveryCall([](store::Store&, service::Backup& backup) { backup.make(kBackupDay); }, folder.path(),
                    reset,
                    [&](int killAt) {
                        const QByteArray data = folder.bytes();
                        const QByteArray copy = contents(backupPath);
                        ASSERT_EQ(markOf(data), "данные") << "call " << killAt;
                        if (copy == oldBackup) {
                            ++backupsOld;
                        } else {
                            // A new backup is always the data file with its date recorded.
                            ASSERT_EQ(copy, data) << "call " << killAt;
                            ++backupsDone;
                        }
                        store::Store next(folder.path());
                        ASSERT_TRUE(opens(next));
                        const QDate recorded = service::Backup(next).lastBackupDate();
                        ASSERT_TRUE(!recorded.isValid() || recorded == kBackupDay) << "call " << killAt;
                    });
    EXPECT_GT(backupsOld, 5);
    EXPECT_GT(backupsDone, 0);
}
