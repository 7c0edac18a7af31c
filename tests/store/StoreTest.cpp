#include "store/Store.h"
#include "jet/Unicode.h"
#include "store/AtomicFile.h"
#include "store/DatabaseDiff.h"
#include "store/FileError.h"
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

// The sample file and a store on it; what a store reads of the balance, and
// the sample file written again with another balance.
class StoreTest : public ::testing::Test
{
protected:
    StoreTest() { folder.write(velmora::test::sampleDatabase()); }

    Amount balance() { return Amount::fromStored(lookupValue(store, "Tech", "F2", "F0 = 'OSTATOK'")); }
    template <typename AnyStore> static qlonglong balanceOf(AnyStore&& store)
    {
        return lookupValue(store, "Tech", "F2", "F0 = 'OSTATOK'").toLongLong();
    }
    void writeBalance(std::int64_t units)
    {
        jet::Database db = velmora::test::sampleDatabase();
        db.table(u"Tech")->rows.at(0).at(2) = jet::Currency{units};
        folder.write(db);
    }

    bool deposit(Transaction& tx, Amount amount, const QString& comment = {})
    {
        return tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                          {QDate(2026, 3, 14), amount, comment});
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
    Store store{folder.path(), &sink};
};

} // namespace

TEST_F(StoreTest, LookupTakesTheLastMatchingRowOrNothing)
{
    Transaction tx(store);
    for (const char* value : {"первый", "второй", "третий"})
        ASSERT_TRUE(tx.execute("INSERT INTO Tech (F0, F1) VALUES ('K', ?)", {QString::fromUtf8(value)}));
    EXPECT_EQ(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}).toString(), QStringLiteral("третий"));
    EXPECT_EQ(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 1).toString(), QStringLiteral("третий"));
    EXPECT_FALSE(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 8).isValid());
    EXPECT_FALSE(tx.lookupValue("Tech", "F1", "F0 = ?", {"нет такого"}).isValid());
    EXPECT_EQ(tx.lookupValue("Tech", "F0", "").toString(), QStringLiteral("K"));
    EXPECT_THROW(tx.lookupValue("Tech", "F1", "F0 = ?", {"K"}, 2), std::invalid_argument);
    // Texts compare without regard to case, Cyrillic included.
    EXPECT_EQ(tx.lookupValue("Bills_Dict", "F0", "F1 = ?", {"ПИТАНИЕ"}).toInt(), 1);
    EXPECT_EQ(tx.query("SELECT ? * 10 + ?", {true, false})[0].integer(0), 10) << "Yes is bound as 1";
    EXPECT_TRUE(sink.engineErrors.isEmpty());
}

// A row read while its query runs gives what the same row kept gives, for
// every kind of value; texts and dates repeated down the rows included.
TEST_F(StoreTest, RowsReadWhileTheQueryRunsAreTheRowsItKeeps)
{
    Transaction tx(store);
    const QString sql = QString::fromUtf8(
        "SELECT * FROM (VALUES (7, '2026-03-05', 'хлеб', 1.5, X'00FF'), (NULL, '2026-03-05 10:30:00', "
        "'хлеб', NULL, NULL), (-3, '2026-03-05', char(65279) || 'метка', 'текст', 12), (2, 'не дата', "
        "'', '2026-01-31', '') , (5, '2026-02-30', 'хлеб', 45000000, 'хлеб'))");
    const Rows kept = tx.query(sql);
    ASSERT_EQ(kept.size(), 5u);
    std::size_t at = 0;
    ASSERT_TRUE(tx.forEachRow(sql, {}, [&](const RowView& row) {
        const Row& same = kept[at++];
        ASSERT_EQ(row.size(), same.size());
        for (int i = 0; i < row.size(); ++i) {
            EXPECT_EQ(row.value(i), same.value(i)) << at << ":" << i;
            EXPECT_EQ(row.integer(i), same.integer(i)) << at << ":" << i;
            EXPECT_EQ(row.text(i), same.text(i)) << at << ":" << i;
            EXPECT_EQ(row.date(i), same.date(i)) << at << ":" << i;
        }
        EXPECT_EQ(row.amount(0), same.amount(0));
    }));
    EXPECT_EQ(at, kept.size());
    EXPECT_EQ(kept[2].text(2), QChar(0xFEFF) + QString::fromUtf8("метка"))
        << "a leading byte-order mark stays";
    EXPECT_EQ(kept[1].date(1), QDate(2026, 3, 5));
    EXPECT_FALSE(kept[4].date(1).isValid());
    EXPECT_THROW(tx.forEachRow(sql, {}, [](const RowView& row) { row.amount(3); }), std::invalid_argument);
}

// Bound values reach the file as typed; an autonumber is never used twice,
// not after a deletion, not by a new store, not after an explicit number, and
// not when the file's counter lags behind its rows.
TEST_F(StoreTest, CommittedRowsReachTheFileAndNumbersAreNeverReused)
{
    jet::Database db = velmora::test::sampleDatabase();
    db.table(u"Bank")->rows.push_back({std::int32_t{2}, jet::DateTime{46000}, jet::Currency{1}, jet::Null{}});
    db.table(u"Bank")->lastAutoNumber = 1;
    folder.write(db);
    {
        Transaction tx(store);
        ASSERT_TRUE(deposit(tx, *Amount::parse(u"1234,56"), QStringLiteral("Зарплата за март, О'Нил")));
        ASSERT_TRUE(
            tx.execute("UPDATE Tech SET F2 = F2 + ? WHERE F0 = ?", {*Amount::parse(u"0,5"), "OSTATOK"}));
        deposit(tx, Amount());
        tx.execute("DELETE FROM Bank WHERE F0 = 4");
        ASSERT_TRUE(tx.commit());
    }
    const jet::Database file = folder.readDataFile();
    const jet::Table& bank = *file.table(u"Bank");
    ASSERT_EQ(bank.rows.size(), 2u);
    EXPECT_EQ(bank.rows[1], jet::Row({std::int32_t{3}, jet::DateTime{46095}, jet::Currency{12'345'600},
                                      std::u16string(u"Зарплата за март, О'Нил")}));
    EXPECT_EQ(bank.lastAutoNumber, 4);
    EXPECT_EQ(balance(), *Amount::parse(u"0,5"));

    Store fresh(folder.path(), &sink);
    Transaction tx(fresh);
    deposit(tx, Amount());
    EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 5);
    tx.execute("INSERT INTO Bank (F0, F2) VALUES (10, 0)");
    deposit(tx, Amount());
    EXPECT_EQ(tx.lookupValue("Bank", "F0", "").toInt(), 11);
    ASSERT_TRUE(tx.commit());
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->lastAutoNumber, 11);
}

// A failed statement or query shows its one box, stops the handler's later
// statements and leaves file and memory as they were.
TEST_F(StoreTest, AFailedStatementLeavesFileAndMemoryAsTheyWere)
{
    const QByteArray before = folder.bytes();
    for (const bool query : {false, true}) {
        sink.engineErrors.clear();
        Transaction tx(store);
        ASSERT_TRUE(tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(500'000)}));
        if (query)
            EXPECT_TRUE(tx.query("SELECT F9 FROM Bills").empty());
        else
            EXPECT_FALSE(tx.execute("INSERT INTO Bank (F3) VALUES (?)", {QString(256, QLatin1Char('x'))}));
        EXPECT_FALSE(tx.ok());
        EXPECT_FALSE(tx.execute("DELETE FROM Purse"));
        const StoreResult result = tx.commit();
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind(), StoreError::Kind::Statement);
        ASSERT_EQ(sink.engineErrors.size(), 1);
        EXPECT_TRUE(sink.engineErrors[0].startsWith(query ? "Error number: 1\rno such column: F9"
                                                          : "Error number: 275\r"));
        EXPECT_TRUE(query || sink.engineErrors[0].contains("Bank.F3: текст длиннее 255 знаков"));
        EXPECT_EQ(folder.bytes(), before);
        EXPECT_EQ(balance(), Amount());
        EXPECT_EQ(rows(store, "Purse").size(), 1u);
    }
}

TEST_F(StoreTest, TheTablesRefuseWhatTheFileCannotHold)
{
    struct Case
    {
        const char* sql;
        QVariantList values;
        const char* error; // nullptr: accepted
    };
    const Case cases[] = {
        {"INSERT INTO Bank (F3) VALUES (?)", {QString(255, QChar(u'я'))}, nullptr},
        {"INSERT INTO Tech (F0) VALUES (?)", {QString(51, QLatin1Char('k'))}, "текст длиннее 50 знаков"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"14.03.2026"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {"2026-02-30"}, "не дата"},
        {"INSERT INTO Bank (F1) VALUES (?)", {QDateTime(QDate(2026, 3, 14), QTime(9, 30))}, nullptr},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {qlonglong{1} << 31}, "число вне допустимого диапазона"},
        {"INSERT INTO Bills_Dict (F0) VALUES (?)", {"три"}, "cannot store TEXT value in INTEGER column"},
        {"INSERT INTO Purse (F1) VALUES (?)", {12.5}, "cannot store REAL value in INTEGER column"},
    };
    for (const Case& c : cases) {
        sink.engineErrors.clear();
        Transaction tx(store);
        EXPECT_EQ(tx.execute(c.sql, c.values), c.error == nullptr) << c.sql;
        EXPECT_TRUE(c.error ? sink.engineErrors.value(0).contains(QString::fromUtf8(c.error))
                            : sink.engineErrors.isEmpty())
            << sink.engineErrors.value(0).toStdString();
    }
}

// Only the outermost commit writes, once, and only when something changed;
// an inner scope left without commit after changes rolls everything back.
TEST_F(StoreTest, NestedTransactionsWriteOnceAtTheOutermostCommit)
{
    int writes = 0;
    Store counted(folder.path(), &sink,
                  [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                      const store::BeforeReplacing& beforeReplacing) {
                      ++writes;
                      store::writeFileAtomically(path, bytes, store::systemFileOps(), beforeReplacing);
                  });
    const QByteArray before = folder.bytes();
    for (const bool innerCommits : {false, true}) {
        Transaction outer(counted);
        deposit(outer, Amount::fromUnits(1));
        {
            Transaction readOnly(counted);
            readOnly.query("SELECT * FROM Bank");
        }
        {
            Transaction inner(counted);
            deposit(inner, Amount::fromUnits(2));
            if (innerCommits) {
                EXPECT_TRUE(inner.commit());
            }
        }
        if (innerCommits) {
            EXPECT_EQ(rows(counted, "Bank").size(), 2u); // a standalone call shares the open transaction
        }
        EXPECT_EQ(folder.bytes(), before);
        EXPECT_EQ(static_cast<bool>(outer.commit()), innerCommits);
        EXPECT_EQ(rows(counted, "Bank").size(), innerCommits ? 2u : 0u);
        EXPECT_EQ(writes, innerCommits ? 1 : 0);
    }
    EXPECT_EQ(folder.readDataFile().table(u"Bank")->rows.size(), 2u);
    // Reading only, or committing nothing, writes nothing.
    lookupValue(counted, "Tech", "F2", "F0 = 'OSTATOK'");
    Transaction tx(counted);
    tx.execute("UPDATE Tech SET F2 = 0 WHERE F0 = 'нет такого'");
    EXPECT_TRUE(tx.commit());
    EXPECT_EQ(writes, 1);
    EXPECT_TRUE(sink.storeFailures.isEmpty());
}

// A save that fails, or finds the file replaced by another program since it
// was read, changes neither file nor memory, and the next one works.
TEST_F(StoreTest, AFailedOrOverrunSaveChangesNeitherFileNorMemory)
{
    writeBalance(100);
    bool diskFull = true;
    Store guarded(folder.path(), &sink,
                  [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                      const store::BeforeReplacing& beforeReplacing) {
                      if (diskFull)
                          throw store::FileError::writing(path, "write", ENOSPC);
                      store::writeFileAtomically(path, bytes, store::systemFileOps(), beforeReplacing);
                  });
    const QByteArray before = folder.bytes();
    const StoreResult failed = setBalance(guarded, 200);
    EXPECT_TRUE(!failed && failed.error().kind() == StoreError::Kind::CannotWrite);
    EXPECT_EQ(sink.storeFailures, QStringList{message(texts::cannotWrite, texts::causeNoSpace)});
    EXPECT_EQ(folder.bytes(), before);
    EXPECT_EQ(balanceOf(guarded), 100);

    diskFull = false;
    sink.storeFailures.clear();
    {
        Transaction tx(guarded);
        tx.execute("UPDATE Tech SET F2 = 2 WHERE F0 = 'OSTATOK'");
        writeBalance(7); // another program, ignoring the lock
        const StoreResult result = tx.commit();
        EXPECT_TRUE(!result && result.error().kind() == StoreError::Kind::ChangedOnDisk);
    }
    EXPECT_EQ(sink.storeFailures, QStringList{message(texts::changedOnDisk)});
    EXPECT_EQ(balanceOf(Store(folder.path())), 7);
    EXPECT_EQ(balanceOf(guarded), 7);
    // Between transactions a replaced file is simply read again.
    writeBalance(9);
    EXPECT_EQ(balanceOf(guarded), 9);
    EXPECT_TRUE(setBalance(guarded, 300));
    EXPECT_EQ(balanceOf(Store(folder.path())), 300);
}

// Tables and values the program never writes come back from a save as they were.
TEST_F(StoreTest, SavingKeepsEveryOtherValueOfTheFile)
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

    ASSERT_TRUE(execute(store, "INSERT INTO Mon (F0, F1) VALUES (13, 'Лишний')"));
    original.table(u"Mon")->rows.push_back({std::int32_t{13}, std::u16string(u"Лишний")});
    EXPECT_EQ(firstDifference(original, folder.readDataFile()), "");
}

// Only the data file's own temporary files go, not those of the backup's writes.
TEST_F(StoreTest, TemporaryFilesOfAnInterruptedSaveAreRemovedOnLoading)
{
    folder.writePrepared();
    std::ofstream(folder / "velmora.mdb.tmp-999999-1") << "half a file";
    std::ofstream(folder / "velmora_backup.mdb.tmp-999999-2") << "half a backup";
    std::ofstream(folder / "notes.txt") << "the user's";
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
    Store store(dir, nullptr,
                [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                    const store::BeforeReplacing& beforeReplacing) {
                    writeFileAtomically(path, bytes, ops, beforeReplacing);
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
