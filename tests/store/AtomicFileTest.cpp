#include "store/AtomicFile.h"
#include "store/FileError.h"
#include "store/RegularFile.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using velmora::test::ProgramFolder;

namespace {

// What the faulty system calls do.
struct Faults
{
    long writeBudget = -1; // bytes that still get written; -1 for no limit
    int writeErrno = EIO;
    std::size_t maxChunk = SIZE_MAX; // short writes
    bool interruptFirstWrite = false;
    int failFsyncNumber = 0; // 1: the file's fsync, 2: the folder's
    int fsyncErrno = EIO;
    bool failClose = false;
    bool failRename = false;
};

class FaultyOps : public store::FileOps
{
public:
    explicit FaultyOps(Faults faults) : m_faults(faults) {}

    ssize_t write(int fd, const void* data, std::size_t size) override
    {
        if (std::exchange(m_faults.interruptFirstWrite, false)) {
            errno = EINTR;
            return -1;
        }
        size = std::min(size, m_faults.maxChunk);
        if (m_faults.writeBudget >= 0) {
            if (m_faults.writeBudget == 0) {
                errno = m_faults.writeErrno;
                return -1;
            }
            size = std::min(size, static_cast<std::size_t>(m_faults.writeBudget));
            m_faults.writeBudget -= static_cast<long>(size);
        }
        return FileOps::write(fd, data, size);
    }
    int fsync(int fd) override
    {
        if (++m_fsyncCalls == m_faults.failFsyncNumber) {
            errno = m_faults.fsyncErrno;
            return -1;
        }
        return FileOps::fsync(fd);
    }
    int close(int fd) override
    {
        FileOps::close(fd);
        errno = EIO;
        return m_faults.failClose ? -1 : 0;
    }
    int rename(const char* from, const char* to) override
    {
        errno = EXDEV;
        return m_faults.failRename ? -1 : FileOps::rename(from, to);
    }

private:
    Faults m_faults;
    int m_fsyncCalls = 0;
};

using Bytes = std::vector<std::uint8_t>;

// The calls go through to the system, while a model keeps what a power cut
// would leave: a file's bytes as of its last fsync with garbage for anything
// written since, and the folder's names either as of the folder's last fsync
// or as they are now (a file system may have written a rename or not).
// After every call it notes the target's contents for both folder states.
class VolatileDisk : public store::FileOps
{
public:
    VolatileDisk(const std::string& target, const Bytes& bytes) : m_target(target)
    {
        m_files.push_back({bytes, bytes});
        m_live[target] = m_durable[target] = 0;
    }

    int open(const char* path, int flags, mode_t mode) override
    {
        const int fd = FileOps::open(path, flags, mode);
        const bool folder = (flags & O_DIRECTORY) != 0;
        if (fd >= 0 && !folder) {
            m_live[path] = m_open[fd] = m_files.size();
            m_files.emplace_back();
        }
        return noted(folder ? "open folder" : "open file", fd);
    }
    ssize_t write(int fd, const void* data, std::size_t size) override
    {
        const ssize_t n = FileOps::write(fd, data, size);
        Bytes& written = m_files[m_open.at(fd)].written;
        if (n > 0)
            written.insert(written.end(), static_cast<const std::uint8_t*>(data),
                           static_cast<const std::uint8_t*>(data) + n);
        return noted("write", n);
    }
    int fsync(int fd) override
    {
        const int result = FileOps::fsync(fd);
        if (result == 0 && !m_open.contains(fd))
            m_durable = m_live;
        else if (result == 0)
            m_files[m_open[fd]].synced = m_files[m_open[fd]].written;
        return noted(m_open.contains(fd) ? "fsync file" : "fsync folder", result);
    }
    int close(int fd) override
    {
        const bool file = m_open.erase(fd) > 0;
        return noted(file ? "close file" : "close folder", FileOps::close(fd));
    }
    int rename(const char* from, const char* to) override
    {
        const int result = FileOps::rename(from, to);
        if (result == 0) {
            m_live[to] = m_live.at(from);
            m_live.erase(from);
        }
        return noted("rename", result);
    }
    int unlink(const char* path) override
    {
        m_live.erase(path);
        return noted("unlink", FileOps::unlink(path));
    }

    std::vector<std::string> calls;
    std::vector<Bytes> afterCrash; // two per call: folder as synced, folder as it is

private:
    struct File
    {
        Bytes written;
        Bytes synced;
    };

    Bytes crashImage(const std::map<std::string, std::size_t>& names) const
    {
        const auto found = names.find(m_target);
        if (found == names.end())
            return {};
        const File& file = m_files[found->second];
        Bytes bytes = file.synced;
        bytes.resize(std::max(file.written.size(), file.synced.size()), 0xA5);
        return bytes;
    }
    template <typename Result> Result noted(const char* call, Result result)
    {
        calls.emplace_back(call);
        afterCrash.push_back(crashImage(m_durable));
        afterCrash.push_back(crashImage(m_live));
        return result;
    }

    std::string m_target;
    std::vector<File> m_files;
    std::map<int, std::size_t> m_open;
    std::map<std::string, std::size_t> m_live;
    std::map<std::string, std::size_t> m_durable;
};

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

// Failures before the rename leave the old file; a failed folder sync after it
// is reported, although the new contents are in place.
TEST(AtomicFile, FailuresAreReportedAndLeaveTheOldFileOrTheWholeNewOne)
{
    struct Case
    {
        const char* name;
        Faults faults;
        const char* step;
        int errorNumber;
        bool renamed = false;
    };
    const Case cases[] = {
        {"no byte written", Faults{.writeBudget = 0}, "write", EIO},
        {"fails after 1000 bytes", Faults{.writeBudget = 1000, .maxChunk = 300}, "write", EIO},
        {"disk full after 4096 bytes", Faults{.writeBudget = 4096, .writeErrno = ENOSPC}, "write", ENOSPC},
        {"file fsync", Faults{.failFsyncNumber = 1}, "fsync", EIO},
        {"close", Faults{.failClose = true}, "close", EIO},
        {"rename", Faults{.failRename = true}, "rename", EXDEV},
        {"folder fsync", Faults{.failFsyncNumber = 2}, "fsync folder", EIO, true},
    };
    const ProgramFolder folder;
    const std::filesystem::path target = folder / "data.bin";
    const std::vector<std::uint8_t> old = pattern(5000, 1);
    for (const Case& c : cases) {
        store::writeFileAtomically(target, old);
        FaultyOps ops(c.faults);
        try {
            store::writeFileAtomically(target, pattern(20000, 2), ops);
            ADD_FAILURE() << c.name << ": no error";
        } catch (const store::FileError& e) {
            EXPECT_TRUE(e.isWrite()) << c.name;
            EXPECT_EQ(e.step(), c.step) << c.name;
            EXPECT_EQ(e.errorNumber(), c.errorNumber) << c.name;
        }
        EXPECT_EQ(bytesOf(target), c.renamed ? pattern(20000, 2) : old) << c.name;
        EXPECT_EQ(folder.strayFiles(), std::vector<std::string>{"data.bin"}) << c.name;
    }
}

// Short and interrupted writes are continued; a file system that cannot sync
// folders (EINVAL) has the new file in place all the same, with the old file's permissions.
TEST(AtomicFile, ShortWritesAndFoldersThatCannotSyncStillGiveTheWholeFile)
{
    const ProgramFolder folder;
    const std::filesystem::path target = folder / "data.bin";
    store::writeFileAtomically(target, pattern(10, 6));
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    for (const Faults& faults : {Faults{.maxChunk = 7, .interruptFirstWrite = true},
                                 Faults{.failFsyncNumber = 2, .fsyncErrno = EINVAL}}) {
        FaultyOps ops(faults);
        const std::vector<std::uint8_t> bytes = pattern(10000, static_cast<std::uint8_t>(faults.maxChunk));
        EXPECT_NO_THROW(store::writeFileAtomically(target, bytes, ops));
        EXPECT_EQ(bytesOf(target), bytes);
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
    const Bytes fresh = pattern(9000, 2);
    store::writeFileAtomically(target, old);
    VolatileDisk disk(target.string(), old);
    store::writeFileAtomically(target, fresh, disk);
    EXPECT_EQ(disk.calls,
              std::vector<std::string>({"open file", "write", "fsync file", "close file", "rename",
                                        "open folder", "fsync folder", "close folder"}));
    for (std::size_t i = 0; i < disk.afterCrash.size(); ++i)
        EXPECT_TRUE(disk.afterCrash[i] == old || disk.afterCrash[i] == fresh)
            << "after " << disk.calls[i / 2];
    EXPECT_EQ(disk.afterCrash.end()[-2], fresh) << "the new file is durable once the call returns";
}
