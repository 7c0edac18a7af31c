#include "store/AtomicFile.h"
#include "store/FileError.h"
#include "store/RegularFile.h"
#include "support/FaultyDisk.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

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
    store::writeFileAtomically(target, fresh, disk);
    EXPECT_EQ(disk.calls,
              std::vector<std::string>({"open file", "write", "write", "write", "fsync file", "close file",
                                        "rename", "open folder", "fsync folder", "close folder"}));
    for (std::size_t i = 0; i < disk.afterCrash.size(); ++i)
        EXPECT_TRUE(disk.afterCrash[i] == old || disk.afterCrash[i] == fresh)
            << "after " << disk.calls[i / 2];
    EXPECT_EQ(disk.afterCrash.end()[-2], fresh) << "the new file is durable once the call returns";
}
