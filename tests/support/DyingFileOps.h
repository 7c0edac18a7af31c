#pragma once

#include "store/FileOps.h"

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace velmora::test {

// The system's calls, except that the process kills itself just before call
// number `killAt` (counted from 1; 0 never), and writes go in pieces of at
// most 16 KiB so that a kill can land in the middle of a file. A kill trial
// steps through every call of a save with it instead of guessing at times.
class DyingFileOps : public store::FileOps
{
public:
    explicit DyingFileOps(int killAt) : m_left(killAt) {}

    int calls() const { return m_calls; }

    int open(const char* path, int flags, mode_t mode) override
    {
        return next(), FileOps::open(path, flags, mode);
    }
    ssize_t write(int fd, const void* data, std::size_t size) override
    {
        return next(), FileOps::write(fd, data, std::min<std::size_t>(size, 16384));
    }
    int fsync(int fd) override { return next(), FileOps::fsync(fd); }
    int close(int fd) override { return next(), FileOps::close(fd); }
    int rename(const char* from, const char* to) override { return next(), FileOps::rename(from, to); }
    int unlink(const char* path) override { return next(), FileOps::unlink(path); }

private:
    void next()
    {
        ++m_calls;
        if (--m_left == 0)
            ::kill(::getpid(), SIGKILL);
    }

    int m_left;
    int m_calls = 0;
};

} // namespace velmora::test
