#include "FileOps.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace store {

int FileOps::open(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileOps::write(int fd, const void* data, std::size_t size)
{
    return ::write(fd, data, size);
}

int FileOps::fsync(int fd)
{
    return ::fsync(fd);
}

int FileOps::close(int fd)
{
    return ::close(fd);
}

int FileOps::rename(const char* from, const char* to)
{
    return ::rename(from, to);
}

int FileOps::link(const char* existing, const char* name)
{
    return ::link(existing, name);
}

int FileOps::unlink(const char* path)
{
    return ::unlink(path);
}

FileOps& systemFileOps()
{
    static FileOps ops;
    return ops;
}

} // namespace store
