#include "jet/Unicode.h"
#include "store/AtomicFile.h"
#include "store/DatabaseDiff.h"
#include "store/FileError.h"
#include "store/Store.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"
#include "support/ChildProcess.h"
#include "support/FaultyDisk.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <random>
#include <utility>

using namespace store;
using velmora::test::ChildProcess;
using velmora::test::FaultyDisk;
using velmora::test::ProgramFolder;
using velmora::test::RecordingSink;

namespace {

class StoreDisk : public ::testing::Test
{
protected:
    // The sample file with `units` as its balance.
    void writeBalance(std::int64_t units)
    {
        jet::Database db = velmora::test::sampleDatabase();
        db.table(u"Tech")->rows.at(0).at(2) = jet::Currency{units};
        folder.write(db);
    }
    template <typename AnyStore> static qlonglong balanceOf(AnyStore&& store)
    {
        return lookupValue(store, "Tech", "F2", "F0 = 'OSTATOK'").toLongLong();
    }
    static StoreResult setBalance(Store& store, std::int64_t units)
    {
        Transaction tx(store);
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(units)});
        tx.execute("INSERT INTO Bank (F2) VALUES (?)", {Amount::fromUnits(units)});
        return tx.commit();
    }
    QString message(const char* text, const char* cause = nullptr) const
    {
        const QString file = QString::fromStdString(folder.dataFile().string());
        return cause ? QString::fromUtf8(text).arg(file, QString::fromUtf8(cause))
                     : QString::fromUtf8(text).arg(file);
    }

    ProgramFolder folder;
    RecordingSink sink;
};

} // namespace

// A save that fails, or finds the file replaced by another program since it
// was read, changes neither file nor memory, and the next one works.
TEST_F(StoreDisk, AFailedOrOverrunSaveChangesNeitherFileNorMemory)
{
    writeBalance(100);
    bool diskFull = true;
    Store store(folder.path(), &sink,
                [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
                    if (diskFull)
                        throw store::FileError::writing(path, "write", ENOSPC);
                    store::writeFileAtomically(path, bytes);
                });
    const QByteArray before = folder.bytes();
    const StoreResult failed = setBalance(store, 200);
    EXPECT_TRUE(!failed && failed.error().kind() == StoreError::Kind::CannotWrite);
    EXPECT_EQ(sink.storeFailures, QStringList{message(texts::cannotWrite, texts::causeNoSpace)});
    EXPECT_EQ(folder.bytes(), before);
    EXPECT_EQ(balanceOf(store), 100);

    diskFull = false;
    sink.storeFailures.clear();
    {
        Transaction tx(store);
        tx.execute("UPDATE Tech SET F2 = 2 WHERE F0 = 'OSTATOK'");
        writeBalance(7); // another program, ignoring the lock
        const StoreResult result = tx.commit();
        EXPECT_TRUE(!result && result.error().kind() == StoreError::Kind::ChangedOnDisk);
    }
    EXPECT_EQ(sink.storeFailures, QStringList{message(texts::changedOnDisk)});
    EXPECT_EQ(balanceOf(Store(folder.path())), 7);
    EXPECT_EQ(balanceOf(store), 7);
    // Between transactions a replaced file is simply read again.
    writeBalance(9);
    EXPECT_EQ(balanceOf(store), 9);
    EXPECT_TRUE(setBalance(store, 300));
    EXPECT_EQ(balanceOf(Store(folder.path())), 300);
}

// Tables and values the program never writes come back from a save as they were.
TEST_F(StoreDisk, SavingKeepsEveryOtherValueOfTheFile)
{
    jet::Database original = velmora::test::sampleDatabase();
    jet::Table extra;
    extra.name = u"Extra";
    using jet::ColumnType;
    extra.columns = {jet::Column::ofType(u"Id", ColumnType::Long, true)};
    for (const ColumnType type :
         {ColumnType::Boolean, ColumnType::Byte, ColumnType::Integer, ColumnType::Currency,
          ColumnType::Single, ColumnType::Double, ColumnType::DateTime, ColumnType::Memo})
        extra.columns.push_back(
            jet::Column::ofType(u"C" + jet::fromUtf8(std::to_string(extra.columns.size())), type));
    extra.columns.push_back(jet::Column::text(u"Name", 20));
    extra.rows = {
        {std::int32_t{1}, true, std::int32_t{255}, std::int32_t{-32768},
         jet::Currency{-9'223'372'036'854'775'807}, 1.5f, 0.1, jet::DateTime{-1.25},
         std::u16string(5000, u'ж'), std::u16string(u"Ёлка «ель»")},
        // A Boolean has no Null in the file.
        {std::int32_t{6}, false, jet::Null{}, jet::Null{}, jet::Null{}, -0.0f, -1e300,
         jet::DateTime{46027 + 45296.0 / 86400}, std::u16string(u"строка\r\nвторая"), jet::Null{}},
    };
    extra.lastAutoNumber = 9;
    original.tables.push_back(extra);
    folder.write(original);

    Store store(folder.path());
    ASSERT_TRUE(execute(store, "INSERT INTO Mon (F0, F1) VALUES (13, 'Лишний')"));
    original.table(u"Mon")->rows.push_back({std::int32_t{13}, std::u16string(u"Лишний")});
    EXPECT_EQ(firstDifference(original, folder.readDataFile()), "");
}

// Only the data file's own temporary files go, not those of the backup's writes.
TEST_F(StoreDisk, TemporaryFilesOfAnInterruptedSaveAreRemovedOnLoading)
{
    folder.writePrepared();
    std::ofstream(folder / "velmora.mdb.tmp-999999-1") << "half a file";
    std::ofstream(folder / "velmora_backup.mdb.tmp-999999-2") << "half a backup";
    std::ofstream(folder / "notes.txt") << "the user's";
    Store store(folder.path());
    ASSERT_TRUE(opens(store));
    EXPECT_EQ(folder.strayFiles(),
              (std::vector<std::string>{"notes.txt", "velmora_backup.mdb.tmp-999999-2"}));
}

namespace {

// Moves the data file from state n to n + 1 in every transaction until
// killed: the balance becomes n + 1, a Bank row numbered n + 1 is added and
// rows older than the last three are deleted. Reports each save; from the
// second save on, dies at system call `killAt` when it is not 0.
void commitForever(const QString& dir, ChildProcess& parent, int killAt)
{
    FaultyDisk ops({});
    Store store(dir, nullptr, [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
        writeFileAtomically(path, bytes, ops);
    });
    for (bool first = true;; first = false) {
        if (!first && killAt)
            ops = FaultyDisk(velmora::test::killedAt(std::exchange(killAt, 0)));
        Transaction tx(store);
        const std::int64_t next = tx.lookupAmount("Tech", "F2", "F0 = 'OSTATOK'").units() + 1;
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(next)});
        tx.execute("INSERT INTO Bank (F2, F3) VALUES (?, ?)",
                   {Amount::fromUnits(next), QStringLiteral("операция %1").arg(next)});
        tx.execute("DELETE FROM Bank WHERE F0 <= ?", {qlonglong{next - 3}});
        if (!tx.commit())
            ::_exit(3);
        parent.report();
    }
}

// The n of a file in state n; -1 for any other contents.
std::int64_t stateOf(const jet::Database& db)
{
    const jet::Table& bank = *db.table(u"Bank");
    const std::int64_t n = std::get<jet::Currency>(db.table(u"Tech")->rows.at(0).at(2)).units;
    const std::int64_t first = std::max<std::int64_t>(1, n - 2);
    if (bank.lastAutoNumber != n || static_cast<std::int64_t>(bank.rows.size()) != (n ? n - first + 1 : 0))
        return -1;
    for (std::int64_t k = first; k <= n; ++k)
        if (bank.rows[k - first] != jet::Row({static_cast<std::int32_t>(k), jet::Null{}, jet::Currency{k},
                                              jet::fromUtf8("операция " + std::to_string(k))}))
            return -1;
    return n;
}

} // namespace

// Even trials kill the child after a random number of reported saves,
// wherever it then is; odd ones have it die at each system call of its second
// save in turn, mid-write included. The file is always a whole state, and
// never older than the last reported save.
TEST(CrashSafety, AProcessKilledAtAnyMomentLeavesTheOldOrTheNewFile)
{
    const ProgramFolder folder;
    folder.writePrepared();
    std::mt19937 random(20260314);
    std::int64_t last = 0;
    for (int trial = 0; trial < 60; ++trial) {
        const int killAt = trial % 2 ? 1 + (trial / 2) % 16 : 0;
        ChildProcess child([&](ChildProcess& parent) { commitForever(folder.path(), parent, killAt); });
        const int wanted = killAt ? 1 : 1 + static_cast<int>(random() % 3);
        int reported = 0;
        while (reported < wanted && child.awaitReport())
            ++reported;
        ASSERT_EQ(reported, wanted) << "trial " << trial;
        ASSERT_EQ(killAt ? child.finish() : child.kill(), 128 + SIGKILL) << "trial " << trial;
        const std::int64_t n = stateOf(folder.readDataFile());
        ASSERT_GE(n, last + wanted) << "trial " << trial;
        last = n;
    }
}
