#include "jet/Unicode.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/DatabaseDiff.h"
#include "store/FileError.h"
#include "store/Store.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"
#include "support/ChildProcess.h"
#include "support/DyingFileOps.h"
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
using velmora::test::DyingFileOps;
using velmora::test::ProgramFolder;
using velmora::test::RecordingSink;

namespace {

QVariant balanceOf(Store& store)
{
    return lookupValue(store, "Tech", "F2", "F0 = ?", {"OSTATOK"}, 2);
}

bool setBalance(Transaction& tx, std::int64_t units)
{
    return tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(units)});
}

jet::Database withBalance(std::int64_t units)
{
    jet::Database db = velmora::test::sampleDatabase();
    for (jet::Row& row : db.table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"OSTATOK")))
            row[2] = jet::Currency{units};
    return db;
}

} // namespace

TEST(StoreDisk, AFailedWriteChangesNeitherFileNorMemory)
{
    ProgramFolder folder;
    folder.write(withBalance(100));
    RecordingSink sink;
    bool diskFull = true;
    Store store(folder.path(), &sink,
                [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
                    if (diskFull)
                        throw store::FileError::writing(path, "write", ENOSPC);
                    store::writeFileAtomically(path, bytes);
                });
    const std::vector<std::uint8_t> before = folder.dataFileBytes();
    {
        Transaction tx(store);
        setBalance(tx, 200);
        const StoreResult result = tx.commit();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind(), StoreError::Kind::CannotWrite);
    }
    const QString expected =
        QString::fromUtf8(texts::cannotWrite)
            .arg(QString::fromStdString(folder.dataFile().string()), QString::fromUtf8(texts::causeNoSpace));
    EXPECT_EQ(sink.storeFailures, QStringList{expected});
    EXPECT_EQ(folder.dataFileBytes(), before);
    EXPECT_EQ(balanceOf(store).toLongLong(), 100);

    diskFull = false;
    Transaction tx(store);
    setBalance(tx, 300);
    EXPECT_TRUE(tx.commit());
    Store reader(folder.path());
    EXPECT_EQ(lookupValue(reader, "Tech", "F2", "F0 = 'OSTATOK'").toLongLong(), 300);
}

TEST(StoreDisk, EachStoreSeesTheOthersCommittedWrites)
{
    ProgramFolder folder;
    folder.write(withBalance(0));
    Store first(folder.path());
    Store second(folder.path());
    EXPECT_EQ(balanceOf(first).toLongLong(), 0);
    EXPECT_EQ(balanceOf(second).toLongLong(), 0);
    for (std::int64_t units = 1; units <= 4; ++units) {
        Store& writer = units % 2 ? first : second;
        Store& reader = units % 2 ? second : first;
        Transaction tx(writer);
        setBalance(tx, units);
        tx.execute("INSERT INTO Bank (F2) VALUES (?)", {Amount::fromUnits(units)});
        ASSERT_TRUE(tx.commit());
        EXPECT_EQ(balanceOf(reader).toLongLong(), units);
        EXPECT_EQ(rows(reader, "Bank").size(), static_cast<std::size_t>(units));
        EXPECT_EQ(lookupValue(reader, "Bank", "F0", "").toInt(), units); // one counter for both
    }
}

TEST(StoreDisk, AFileReplacedDuringATransactionIsReadAgainNotOverwritten)
{
    ProgramFolder folder;
    folder.write(withBalance(1));
    RecordingSink sink;
    Store store(folder.path(), &sink);
    {
        Transaction tx(store);
        setBalance(tx, 2);
        folder.write(withBalance(7)); // another program, ignoring the lock
        const StoreResult result = tx.commit();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind(), StoreError::Kind::ChangedOnDisk);
    }
    EXPECT_EQ(
        sink.storeFailures,
        QStringList{
            QString::fromUtf8(texts::changedOnDisk).arg(QString::fromStdString(folder.dataFile().string()))});
    EXPECT_EQ((*folder.readDataFile().table(u"Tech")).rows[0][2], jet::Value(jet::Currency{7}));
    EXPECT_EQ(balanceOf(store).toLongLong(), 7);

    // Between transactions a replaced file is simply read again.
    folder.write(withBalance(9));
    EXPECT_EQ(balanceOf(store).toLongLong(), 9);
}

TEST(StoreDisk, SavingKeepsEveryOtherValueOfTheFile)
{
    jet::Database original = velmora::test::sampleDatabase();
    jet::Table extra;
    extra.name = u"Extra";
    extra.columns = {jet::Column::ofType(u"Id", jet::ColumnType::Long, true),
                     jet::Column::ofType(u"Flag", jet::ColumnType::Boolean),
                     jet::Column::ofType(u"Small", jet::ColumnType::Byte),
                     jet::Column::ofType(u"Short", jet::ColumnType::Integer),
                     jet::Column::ofType(u"Money", jet::ColumnType::Currency),
                     jet::Column::ofType(u"Ratio", jet::ColumnType::Single),
                     jet::Column::ofType(u"Exact", jet::ColumnType::Double),
                     jet::Column::ofType(u"When", jet::ColumnType::DateTime),
                     jet::Column::text(u"Name", 20),
                     jet::Column::ofType(u"Notes", jet::ColumnType::Memo)};
    extra.rows = {
        {std::int32_t{1}, true, std::int32_t{255}, std::int32_t{-32768},
         jet::Currency{-9'223'372'036'854'775'807}, 1.5f, 0.1, jet::DateTime{-1.25},
         std::u16string(u"Ёлка «ель»"), std::u16string(5000, u'ж')},
        {std::int32_t{5}, false, std::int32_t{0}, std::int32_t{32767}, jet::Currency{1}, -0.0f, -1e300,
         jet::DateTime{46027 + 45296.0 / 86400}, std::u16string(), jet::Null{}},
        // A Boolean has no Null in the file.
        {std::int32_t{6}, false, jet::Null{}, jet::Null{}, jet::Null{}, jet::Null{}, jet::Null{}, jet::Null{},
         jet::Null{}, std::u16string(u"строка\r\nвторая")},
    };
    extra.lastAutoNumber = 9;
    original.tables.push_back(extra);
    ProgramFolder folder;
    folder.write(original);

    Store store(folder.path());
    Transaction tx(store);
    ASSERT_TRUE(tx.execute("INSERT INTO Mon (F0, F1) VALUES (13, ?)", {QStringLiteral("Лишний")}));
    ASSERT_TRUE(tx.commit());

    jet::Database expected = original;
    expected.table(u"Mon")->rows.push_back({std::int32_t{13}, std::u16string(u"Лишний")});
    EXPECT_EQ(firstDifference(expected, folder.readDataFile()), "");
}

// Only the data file's own temporary files go, not those of the backup's writes.
TEST(StoreDisk, TemporaryFilesOfAnInterruptedSaveAreRemovedOnLoading)
{
    ProgramFolder folder;
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
    DyingFileOps ops(0);
    Store store(dir, nullptr, [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
        writeFileAtomically(path, bytes, ops);
    });
    for (bool first = true;; first = false) {
        if (!first && killAt)
            ops = DyingFileOps(std::exchange(killAt, 0));
        Transaction tx(store);
        const std::int64_t next = tx.lookupAmount("Tech", "F2", "F0 = 'OSTATOK'").units() + 1;
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(next)});
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 1, 1), Amount::fromUnits(next), QStringLiteral("операция %1").arg(next)});
        tx.execute("DELETE FROM Bank WHERE F0 <= ?", {qlonglong{next - 3}});
        if (!tx.commit())
            ::_exit(3);
        parent.report();
    }
}

// The n of a file in state n; -1 with `problem` set for any other contents.
std::int64_t stateOf(const jet::Database& db, std::string& problem)
{
    const jet::Table& tech = *db.table(u"Tech");
    const jet::Table& bank = *db.table(u"Bank");
    const std::int64_t n = std::get<jet::Currency>(tech.rows.at(0).at(2)).units;
    const std::int64_t first = std::max<std::int64_t>(1, n - 2);
    const std::size_t expectedRows = n == 0 ? 0 : static_cast<std::size_t>(n - first + 1);
    if (bank.rows.size() != expectedRows || bank.lastAutoNumber != n) {
        problem = "balance " + std::to_string(n) + " with " + std::to_string(bank.rows.size()) + " Bank rows";
        return -1;
    }
    for (std::size_t i = 0; i < bank.rows.size(); ++i) {
        const std::int64_t k = first + static_cast<std::int64_t>(i);
        const jet::Row& row = bank.rows[i];
        if (row[0] != jet::Value(static_cast<std::int32_t>(k)) || row[2] != jet::Value(jet::Currency{k}) ||
            row[3] != jet::Value(jet::fromUtf8("операция " + std::to_string(k)))) {
            problem = "Bank row " + std::to_string(i) + " in state " + std::to_string(n);
            return -1;
        }
    }
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

        std::string problem;
        const std::int64_t n = stateOf(folder.readDataFile(), problem);
        ASSERT_GE(n, last + wanted) << "trial " << trial << ": " << problem;
        last = n;
    }
}
