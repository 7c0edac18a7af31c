#include "store/AtomicFile.h"
#include "StoreFolder.h"
#include "store/FileError.h"
#include "store/RegularFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using store::test::StoreFolder;

namespace {

// What the faulty system calls do; the calls are plain function pointers, so
// their settings live here.
struct Faults
{
    long writeBudget = -1; // bytes that still get written; -1 for no limit
    int writeErrno = EIO;
    std::size_t maxChunk = SIZE_MAX; // short writes
    bool interruptFirstWrite = false;
    int failFsyncNumber = 0; // 1: the file's fsync, 2: the folder's
    int fsyncCalls = 0;
    int fsyncErrno = EIO;
    bool failClose = false;
    bool failRename = false;
} g_faults;

ssize_t faultyWrite(int fd, const void* data, std::size_t size)
{
    if (g_faults.interruptFirstWrite) {
        g_faults.interruptFirstWrite = false;
        errno = EINTR;
        return -1;
    }
    size = std::min(size, g_faults.maxChunk);
    if (g_faults.writeBudget >= 0) {
        if (g_faults.writeBudget == 0) {
            errno = g_faults.writeErrno;
            return -1;
        }
        size = std::min(size, static_cast<std::size_t>(g_faults.writeBudget));
        g_faults.writeBudget -= static_cast<long>(size);
    }
    return ::write(fd, data, size);
}

int faultyFsync(int fd)
{
    if (++g_faults.fsyncCalls == g_faults.failFsyncNumber) {
        errno = g_faults.fsyncErrno;
        return -1;
    }
    return ::fsync(fd);
}

int faultyClose(int fd)
{
    ::close(fd);
    if (!g_faults.failClose)
        return 0;
    errno = EIO;
    return -1;
}

int faultyRename(const char* from, const char* to)
{
    if (!g_faults.failRename)
        return ::rename(from, to);
    errno = EXDEV;
    return -1;
}

store::FileOps faultyOps()
{
    store::FileOps ops = store::systemFileOps();
    ops.write = faultyWrite;
    ops.fsync = faultyFsync;
    ops.close = faultyClose;
    ops.rename = faultyRename;
    return ops;
}

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path)
{
    return store::readRegularFile(path).bytes;
}

std::vector<std::uint8_t> pattern(std::size_t size, std::uint8_t seed)
{
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 31);
    return bytes;
}

} // namespace

TEST(AtomicFile, FailuresBeforeTheRenameLeaveTheTargetAndNoTemporaryFile)
{
    struct Case
    {
        const char* name;
        Faults faults;
        const char* step;
        int errorNumber;
    };
    const Case cases[] = {
        {"no byte written", Faults{.writeBudget = 0}, "write", EIO},
        {"fails after 1000 bytes", Faults{.writeBudget = 1000, .maxChunk = 300}, "write", EIO},
        {"disk full after 4096 bytes", Faults{.writeBudget = 4096, .writeErrno = ENOSPC}, "write", ENOSPC},
        {"file fsync", Faults{.failFsyncNumber = 1}, "fsync", EIO},
        {"close", Faults{.failClose = true}, "close", EIO},
        {"rename", Faults{.failRename = true}, "rename", EXDEV},
    };
    const StoreFolder folder;
    const std::filesystem::path target = folder.path() / "data.bin";
    const std::vector<std::uint8_t> old = pattern(5000, 1);
    store::writeFileAtomically(target, old);
    for (const Case& c : cases) {
        g_faults = c.faults;
        try {
            store::writeFileAtomically(target, pattern(20000, 2), faultyOps());
            ADD_FAILURE() << c.name << ": no error";
        } catch (const store::FileError& e) {
            EXPECT_TRUE(e.isWrite()) << c.name;
            EXPECT_EQ(e.step(), c.step) << c.name;
            EXPECT_EQ(e.errorNumber(), c.errorNumber) << c.name;
        }
        EXPECT_EQ(bytesOf(target), old) << c.name;
        EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.bin"}) << c.name;
    }
}

// Short and interrupted writes are continued; a file system that cannot sync
// folders (EINVAL) has the new file in place all the same.
TEST(AtomicFile, ShortWritesAndFoldersThatCannotSyncStillGiveTheWholeFile)
{
    const StoreFolder folder;
    const std::filesystem::path target = folder.path() / "data.bin";
    store::writeFileAtomically(target, pattern(10, 6));
    for (const Faults& faults : {Faults{.maxChunk = 7, .interruptFirstWrite = true},
                                 Faults{.failFsyncNumber = 2, .fsyncErrno = EINVAL}}) {
        g_faults = faults;
        const std::vector<std::uint8_t> bytes = pattern(10000, static_cast<std::uint8_t>(faults.maxChunk));
        EXPECT_NO_THROW(store::writeFileAtomically(target, bytes, faultyOps()));
        EXPECT_EQ(bytesOf(target), bytes);
        EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.bin"});
    }
}

TEST(AtomicFile, ReplacingKeepsPermissionsOfTheOldFile)
{
    const StoreFolder folder;
    const std::filesystem::path target = folder.path() / "data.bin";
    store::writeFileAtomically(target, pattern(10, 4));
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    store::writeFileAtomically(target, pattern(20, 5));
    struct stat st
    {
    };
    ASSERT_EQ(::stat(target.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_EQ(bytesOf(target), pattern(20, 5));
}

TEST(AtomicFile, FolderSyncAfterTheRename)
{
    const StoreFolder folder;
    const std::filesystem::path target = folder.path() / "data.bin";
    store::writeFileAtomically(target, pattern(10, 6));
    // A failed folder sync is reported, although the new contents are in place.
    g_faults = Faults{.failFsyncNumber = 2, .fsyncErrno = EIO};
    try {
        store::writeFileAtomically(target, pattern(40, 8), faultyOps());
        ADD_FAILURE() << "no error";
    } catch (const store::FileError& e) {
        EXPECT_EQ(e.step(), "fsync folder");
    }
    EXPECT_EQ(bytesOf(target), pattern(40, 8));
}
