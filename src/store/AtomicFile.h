#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/types.h>

namespace store {

// The system calls an atomic write makes. Tests hand in versions that fail
// after some bytes, report a full disk or refuse the rename; the program uses
// systemFileOps().
struct FileOps
{
    int (*open)(const char* path, int flags, mode_t mode);
    ssize_t (*write)(int fd, const void* data, std::size_t size);
    int (*fsync)(int fd);
    int (*close)(int fd);
    int (*rename)(const char* from, const char* to);
    int (*unlink)(const char* path);
};

const FileOps& systemFileOps();

// Replaces `path` with `bytes` so that a crash at any moment leaves either the
// old or the new file: temporary file in the same folder, fsync, rename over
// the target, fsync of the folder. Throws FileError; before the rename the
// target is untouched and the temporary file removed. A failed fsync of the
// folder after the rename is reported too, although the new contents are then
// already in place. When `path` is a symbolic link, the file it points at is
// replaced (temporary file in that file's folder) and the link stays as it is.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                         const FileOps& ops = systemFileOps());

// The path a chain of symbolic links ends at (`path` itself when it is no
// link), whether that file exists or not. Throws FileError (ELOOP) for a
// chain that loops.
std::filesystem::path followLinks(const std::filesystem::path& path);

// True when `candidate` is a temporary file that an atomic write of `target`
// creates (left behind only when a process dies mid-write).
bool isTemporaryFileOf(const std::filesystem::path& target, const std::filesystem::path& candidate);

} // namespace store
