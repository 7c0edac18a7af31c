#include "store/AtomicFile.h"
#include "jet/Writer.h"
#include "store/DataFile.h"
#include "store/FileError.h"
#include "store/FileSaver.h"
#include "store/RegularFile.h"
#include "store/StoreError.h"
#include "support/FaultyDisk.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <sys/stat.h>

using velmora::test::Faults;
using velmora::test::FaultyDisk;
using velmora::test::ProgramFolder;
using Bytes = std::vector<std::uint8_t>;

namespace {

Bytes pattern(std::size_t size, std::uint8_t seed)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 31);
    return bytes;
}

} // namespace

// Failures before the rename leave the old file and no temporary one; a failed
// folder sync after it is reported, although the new contents are in place.
// Interrupted writes are continued, and a folder that cannot be synced
// (EINVAL) does not stop the save. The new file keeps the old one's permissions.
TEST(AtomicFile, FailuresAreReportedAndLeaveTheOldFileOrTheWholeNewOne)
{
    struct Case
    {
        Faults faults;
        const char* step; // nullptr: the save succeeds
        bool renamed = false;
    };
    const Case cases[] = {
        {{"write", 0, ENOSPC}, "write"},  {{"write", 1, EIO}, "write"}, // after a first piece
        {{"fsync file"}, "fsync"},        {{"close file"}, "close"},
        {{"rename", 0, EXDEV}, "rename"}, {{"fsync folder"}, "fsync folder", true},
        {{"write", 1, EINTR}, nullptr},   {{"fsync folder", 0, EINVAL}, nullptr},
    };
    const ProgramFolder folder;
    const std::filesystem::path target = folder / "data.bin";
    const Bytes old = pattern(5000, 1);
    const Bytes fresh = pattern(20000, 2);
    store::writeFileAtomically(target, old);
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.faults.failing + " " + std::to_string(c.faults.error));
        store::writeFileAtomically(target, old);
        FaultyDisk disk(c.faults);
        try {
            store::writeFileAtomically(target, fresh, disk);
            EXPECT_EQ(c.step, nullptr) << "no error";
        } catch (const store::FileError& e) {
            EXPECT_TRUE(c.step && e.isWrite() && e.step() == c.step && e.errorNumber() == c.faults.error)
                << e.what();
        }
        EXPECT_EQ(store::readRegularFile(target).bytes, c.step && !c.renamed ? old : fresh);
        EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.bin"});
        struct stat st
        {
        };
        ASSERT_EQ(::stat(target.c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 0777, 0640u);
    }
}

// The save's calls in their order, and what a power cut after any one of them
// leaves: the old file or the new one, never a mix or garbage, and the new one
// once the call has returned. A missing or misplaced fsync shows up here.
TEST(AtomicFile, APowerCutAfterAnyCallLeavesTheOldOrTheNewFile)
{
    const ProgramFolder folder;
    const std::filesystem::path target = folder / "data.bin";
    const Bytes old = pattern(3000, 1);
    const Bytes fresh = pattern(40000, 2);
    store::writeFileAtomically(target, old);
    FaultyDisk disk({}, target.string(), old);
    std::size_t callsBeforeReplacing = 0;
    store::writeFileAtomically(target, fresh, disk, [&] { callsBeforeReplacing = disk.calls.size(); });
    EXPECT_EQ(disk.calls,
              std::vector<std::string>({"open file", "write", "write", "write", "fsync file", "close file",
                                        "rename", "open folder", "fsync folder", "close folder"}));
    EXPECT_EQ(callsBeforeReplacing, 6u) << "the wait before replacing comes between closing and renaming";
    for (std::size_t i = 0; i < disk.afterCrash.size(); ++i)
        EXPECT_TRUE(disk.afterCrash[i] == old || disk.afterCrash[i] == fresh)
            << "after " << disk.calls[i / 2];
    EXPECT_EQ(disk.afterCrash.end()[-2], fresh) << "the new file is durable once the call returns";
    // What the wait throws stops the write: the file stays, the temporary one goes.
    EXPECT_THROW(store::writeFileAtomically(target, old, store::systemFileOps(),
                                            [] { throw std::runtime_error("check failed"); }),
                 std::runtime_error);
    EXPECT_EQ(store::readRegularFile(target).bytes, fresh);
    EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.bin"});
}

// The new file is checked while it is written: one that does not decode back
// to what it was made from (a NaN is never equal to itself) never takes the
// data file's place, and no temporary file is left.
TEST(FileSaver, AFileThatDoesNotDecodeBackNeverReplacesTheDataFile)
{
    const ProgramFolder folder;
    const std::filesystem::path target = folder / "data.mdb";
    jet::Database db;
    db.tables.push_back({u"Rates", {jet::Column::ofType(u"F0", jet::ColumnType::Double)}, {{1.5}}, 0});
    const Bytes old = jet::encodeDatabase(db);
    store::writeFileAtomically(target, old);
    const store::DataFile file(target, u"");
    int replaced = 0;
    const store::FileWriter writer = [&](const std::filesystem::path& path,
                                         std::span<const std::uint8_t> bytes,
                                         const store::BeforeReplacing& beforeReplacing) {
        store::writeFileAtomically(path, bytes, store::systemFileOps(), [&] {
            beforeReplacing();
            ++replaced;
        });
    };
    const store::FileSaver saver(file, writer);
    db.tables[0].rows[0][0] = std::nan("");
    try {
        saver.save(store::NextFile(db), store::FileSignature::of(target));
        ADD_FAILURE() << "saved";
    } catch (const store::StoreError& e) {
        EXPECT_EQ(e.kind(), store::StoreError::Kind::CannotWrite);
    }
    EXPECT_EQ(store::readRegularFile(target).bytes, old);
    EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.mdb"});
    // A writer that does not wait still hears that the check failed.
    const store::FileWriter hasty = [](const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                                       const store::BeforeReplacing&) {
        store::writeFileAtomically(path, bytes);
    };
    EXPECT_THROW(store::FileSaver(file, hasty).save(store::NextFile(db), store::FileSignature::of(target)),
                 store::StoreError);
    store::writeFileAtomically(target, old);
    db.tables[0].rows[0][0] = 2.5;
    saver.save(store::NextFile(db), store::FileSignature::of(target));
    EXPECT_EQ(store::readRegularFile(target).bytes, jet::encodeDatabase(db));
    EXPECT_EQ(replaced, 1);
}
