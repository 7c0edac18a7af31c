#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/DatabaseDiff.h"
#include "store/FileError.h"
#include "store/Store.h"
#include "store/StoreTexts.h"
#include "store/Transaction.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

using namespace store;
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
