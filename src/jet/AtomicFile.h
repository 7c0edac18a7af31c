#pragma once

#include "Error.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/types.h>

namespace jet {

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

// A failed step of an atomic write and the errno that stopped it, so that a
// caller can explain the cause in its own words.
class WriteError : public Error
{
public:
    WriteError(const std::filesystem::path& target, std::string step, int errorNumber);
    int errorNumber() const { return m_errorNumber; }
    const std::string& step() const { return m_step; }

private:
    std::string m_step;
    int m_errorNumber;
};

// writeFileAtomically with the given system calls. Throws WriteError; before
// the rename the target is untouched and the temporary file removed. A failed
// fsync of the folder after the rename is reported too, although the new
// contents are then already in place. When `path` is a symbolic link, the
// file it points at is replaced (temporary file in that file's folder) and
// the link stays as it is.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                         const FileOps& ops);

// The path a chain of symbolic links ends at (`path` itself when it is no
// link), whether that file exists or not. Throws WriteError (ELOOP) for a
// chain that loops.
std::filesystem::path followLinks(const std::filesystem::path& path);

// True when `candidate` is a temporary file that an atomic write of `target`
// creates (left behind only when a process dies mid-write).
bool isTemporaryFileOf(const std::filesystem::path& target, const std::filesystem::path& candidate);

} // namespace jet
