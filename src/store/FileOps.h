#pragma once

#include <cstddef>
#include <sys/types.h>

namespace store {

// The system calls an atomic write (or a second name) makes, as an object handed in. The program
// uses systemFileOps(); tests derive from it to fail a call, record the order
// of the calls or model what a crash keeps of unsynced writes.
class FileOps
{
public:
    virtual ~FileOps() = default;

    virtual int open(const char* path, int flags, mode_t mode);
    virtual ssize_t write(int fd, const void* data, std::size_t size);
    virtual int fsync(int fd);
    virtual int close(int fd);
    virtual int rename(const char* from, const char* to);
    virtual int link(const char* existing, const char* name);
    virtual int unlink(const char* path);
};

// The calls as the system makes them; holds no state.
FileOps& systemFileOps();

} // namespace store
