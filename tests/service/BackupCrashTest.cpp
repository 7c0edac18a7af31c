#include "LedgerFile.h"
#include "jet/Reader.h"
#include "service/Backup.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DyingFileOps.h"

#include "store/AtomicFile.h"

#include <csignal>

using namespace velmora::test;

namespace {

const QDate kBackupDay(2026, 3, 15);

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
        const std::span<const std::uint8_t> view(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                                 static_cast<std::size_t>(bytes.size()));
        const jet::Database db = jet::readDatabase(view, store::kFilePassword);
        if (!store::schemaMismatch(db).empty())
            return "not a data file";
        const auto& name = std::get<std::u16string>(db.table(u"Bills_Dict")->rows.at(0).at(1));
        return QString::fromStdU16String(name).toStdString();
    } catch (const std::exception& e) {
        return std::string("unreadable: ") + e.what();
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
        velmora::test::ChildProcess child([&](velmora::test::ChildProcess&) {
            velmora::test::DyingFileOps ops(killAt);
            const store::FileWriter writer = [&](const std::filesystem::path& path,
                                                 std::span<const std::uint8_t> bytes) {
                store::writeFileAtomically(path, bytes, ops);
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

TEST(BackupCrash, AKilledRestoreLeavesTheOldOrTheRestoredDataFile)
{
    ProgramFolder folder;
    const QString backupPath = QDir(folder.path()).filePath(store::kBackupFileName);
    folder.write(marked("прежний").database());
    const QByteArray old = folder.bytes();
    folder.write(marked("из копии").database());
    const QByteArray restored = folder.bytes();
    writeBytes(backupPath, restored);
    int oldSeen = 0;
    int newSeen = 0;
    killAtEveryCall([](store::Store&, service::Backup& backup) { backup.restore(kBackupDay); }, folder.path(),
                    [&] { folder.writeBytes(old); },
                    [&](int killAt) {
                        const std::string mark = markOf(folder.bytes());
                        ASSERT_TRUE(mark == "прежний" || mark == "из копии")
                            << "call " << killAt << ": " << mark;
                        (mark == "прежний" ? oldSeen : newSeen)++;
                        ASSERT_EQ(contents(backupPath), restored) << "the backup itself is never touched";
                        // The next start opens the file and clears what the killed write left.
                        store::Store next(folder.path());
                        ASSERT_TRUE(opens(next));
                        EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{store::kBackupFileName});
                    });
    EXPECT_GT(oldSeen, 5);
    EXPECT_GT(newSeen, 0);
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
