#pragma once

#include "store/FileOps.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace velmora::test {

// What goes wrong on a FaultyDisk.
struct Faults
{
    std::string
        failing;  // the call that fails once: "write", "fsync file", "close file", "rename", "fsync folder"
    int skip = 0; // calls of that kind that succeed first
    int error = EIO;
    int killAt = 0; // the process kills itself just before call number killAt (from 1; 0 never)
};

inline Faults killedAt(int call)
{
    Faults faults;
    faults.killAt = call;
    return faults;
}

// The system's calls with faults injected, and writes in pieces of at most
// 16 KiB. A kill trial steps through every call of a save with killAt instead
// of guessing at times; the pieces let a kill land in the middle of a file. Meanwhile a model keeps what a
// power cut after each call would leave of `target`: a file's bytes as of its last fsync with garbage for
// anything written since, and the folder's names either as of the folder's last fsync or as they are now (a
// file system may have written a rename or not).
class FaultyDisk : public store::FileOps
{
public:
    using Bytes = std::vector<std::uint8_t>;

    explicit FaultyDisk(Faults faults, const std::string& target = {}, const Bytes& bytes = {})
        : m_faults(std::move(faults)), m_target(target)
    {
        m_files.push_back({bytes, bytes});
        m_live[target] = m_durable[target] = 0;
    }

    int open(const char* path, int flags, mode_t mode) override
    {
        next();
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
        if (fails("write"))
            return -1;
        const ssize_t n = FileOps::write(fd, data, std::min<std::size_t>(size, 16384));
        const auto* from = static_cast<const std::uint8_t*>(data);
        Bytes& written = m_files[m_open.at(fd)].written;
        written.insert(written.end(), from, from + std::max<ssize_t>(n, 0));
        return noted("write", n);
    }
    int fsync(int fd) override
    {
        const bool file = m_open.contains(fd);
        if (fails(file ? "fsync file" : "fsync folder"))
            return -1;
        const int result = FileOps::fsync(fd);
        if (result == 0 && file)
            m_files[m_open[fd]].synced = m_files[m_open[fd]].written;
        else if (result == 0)
            m_durable = m_live;
        return noted(file ? "fsync file" : "fsync folder", result);
    }
    int close(int fd) override
    {
        const bool file = m_open.erase(fd) > 0;
        const bool failed = fails(file ? "close file" : "close folder");
        const int result = FileOps::close(fd);
        return failed ? -1 : noted(file ? "close file" : "close folder", result);
    }
    int rename(const char* from, const char* to) override
    {
        if (fails("rename"))
            return -1;
        const int result = FileOps::rename(from, to);
        if (result == 0) {
            m_live[to] = m_live.at(from);
            m_live.erase(from);
        }
        return noted("rename", result);
    }
    int unlink(const char* path) override
    {
        next();
        m_live.erase(path);
        return FileOps::unlink(path);
    }

    std::vector<std::string> calls;
    std::vector<Bytes> afterCrash; // two per call: folder as synced, folder as it is

private:
    struct File
    {
        Bytes written;
        Bytes synced;
    };

    void next()
    {
        if (++m_calls == m_faults.killAt)
            ::kill(::getpid(), SIGKILL);
    }
    bool fails(const std::string& call)
    {
        next();
        if (call != m_faults.failing || m_faults.skip-- > 0)
            return false;
        m_faults.failing.clear();
        errno = m_faults.error;
        return true;
    }
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

    Faults m_faults;
    std::string m_target;
    int m_calls = 0;
    std::vector<File> m_files;
    std::map<int, std::size_t> m_open;
    std::map<std::string, std::size_t> m_live;
    std::map<std::string, std::size_t> m_durable;
};

} // namespace velmora::test
