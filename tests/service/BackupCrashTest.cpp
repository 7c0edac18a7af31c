#include "ServiceData.h"
#include "jet/Reader.h"
#include "service/Backup.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace velmora::test;

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTrials = 120;
const QDate kBackupDay(2026, 3, 15);

// A data file with enough rows that saving it takes a while, marked by the
// name of its only account.
DataBuilder marked(const QString& account)
{
    DataBuilder data;
    data.account(1, account);
    for (int i = 0; i < 3000; ++i)
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

// Runs `work` in a child process, killed after `killAfter` when given; returns
// how long the child lived.
std::chrono::microseconds runInChild(const std::function<void()>& work,
                                     std::optional<std::chrono::microseconds> killAfter = {})
{
    const auto start = Clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    if (killAfter) {
        std::this_thread::sleep_for(*killAfter);
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
}

// Kills `work` at a random moment of the time it takes. That time is measured
// again for each kill, with the files put back by `reset` before either run,
// so that a machine that is busy now and idle later does not push every kill
// to one side of the rename.
void killAtRandomMoment(const std::function<void()>& work, const std::function<void()>& reset,
                        std::mt19937& random)
{
    reset();
    const std::chrono::microseconds duration = runInChild(work);
    reset();
    runInChild(work, std::chrono::microseconds(
                         std::uniform_int_distribution<long>(0, duration.count() * 5 / 4)(random)));
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
    const auto restore = [&] {
        store::Store store(folder.path());
        service::Backup(store).restore(QDate(2026, 3, 15));
    };
    std::mt19937 random(20260315);
    int oldSeen = 0;
    int newSeen = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
        killAtRandomMoment(
            restore, [&] { folder.writeBytes(old); }, random);
        const std::string mark = markOf(folder.bytes());
        ASSERT_TRUE(mark == "прежний" || mark == "из копии") << "trial " << trial << ": " << mark;
        (mark == "прежний" ? oldSeen : newSeen)++;
        ASSERT_EQ(contents(backupPath), restored) << "the backup itself is never touched";
        // The next start opens the file and clears what the killed write left.
        store::Store next(folder.path());
        ASSERT_TRUE(opens(next));
    }
    // Kills must land on both sides of the rename, or the test proves little.
    EXPECT_GT(oldSeen, 5);
    EXPECT_GT(newSeen, 5);
    RecordProperty("old", oldSeen);
    RecordProperty("restored", newSeen);
}

TEST(BackupCrash, AKilledBackupLeavesEachFileOldOrNew)
{
    ProgramFolder folder;
    const QString backupPath = QDir(folder.path()).filePath(store::kBackupFileName);
    folder.write(marked("копия прошлая").database());
    const QByteArray oldBackup = folder.bytes();
    folder.write(marked("данные").database());
    const QByteArray oldData = folder.bytes();
    const auto backup = [&] {
        store::Store store(folder.path());
        service::Backup(store).make(kBackupDay);
    };
    const auto reset = [&] {
        folder.writeBytes(oldData);
        writeBytes(backupPath, oldBackup);
    };
    std::mt19937 random(20260316);
    int backupsDone = 0;
    int backupsOld = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
        killAtRandomMoment(backup, reset, random);
        const QByteArray data = folder.bytes();
        const QByteArray copy = contents(backupPath);
        ASSERT_EQ(markOf(data), "данные") << "trial " << trial;
        if (copy == oldBackup) {
            ++backupsOld;
        } else {
            // A new backup is always the data file with its date recorded.
            ASSERT_EQ(copy, data) << "trial " << trial;
            ++backupsDone;
        }
        store::Store next(folder.path());
        ASSERT_TRUE(opens(next));
        const QDate recorded = service::Backup(next).lastBackupDate();
        ASSERT_TRUE(!recorded.isValid() || recorded == kBackupDay) << "trial " << trial;
    }
    EXPECT_GT(backupsOld, 5);
    EXPECT_GT(backupsDone, 5);
    RecordProperty("oldBackup", backupsOld);
    RecordProperty("newBackup", backupsDone);
}
