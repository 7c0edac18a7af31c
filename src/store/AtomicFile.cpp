#include "AtomicFile.h"

#include "FileError.h"
#include "FileWriter.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace store {

namespace fs = std::filesystem;

namespace {

constexpr const char* kTemporaryMarker = ".tmp-";
constexpr int kMaxLinkHops = 40; // as the kernel counts

std::string temporaryName(const fs::path& target, unsigned attempt)
{
    static std::atomic<unsigned> counter{0};
    return target.string() + kTemporaryMarker + std::to_string(::getpid()) + "-" +
           std::to_string(counter.fetch_add(1) + attempt);
}

// Creates the temporary file beside the target with O_EXCL, so that a stale
// file of a dead process is never reused.
int createTemporary(const fs::path& target, FileOps& ops, std::string& name)
{
    for (unsigned attempt = 0;; ++attempt) {
        name = temporaryName(target, attempt);
        const int fd = ops.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST || attempt >= 100)
            return fd;
    }
}

// The new file gets the permissions of the one it replaces. Best effort: some
// file systems refuse chmod, and that must not stop the save.
void copyPermissions(const fs::path& target, int fd)
{
    struct stat st
    {
    };
    if (::stat(target.c_str(), &st) == 0)
        (void)::fchmod(fd, st.st_mode & 07777);
}

bool writeAll(int fd, std::span<const std::uint8_t> bytes, FileOps& ops)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ops.write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = EIO;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// Writes and syncs the temporary file; on failure removes it and throws.
void writeTemporary(const fs::path& target, const std::string& name, int fd,
                    std::span<const std::uint8_t> bytes, FileOps& ops)
{
    const char* step = nullptr;
    int cause = 0;
    if (!writeAll(fd, bytes, ops)) {
        step = "write";
        cause = errno;
    } else if (ops.fsync(fd) != 0) {
        step = "fsync";
        cause = errno;
    }
    if (ops.close(fd) != 0 && !step) {
        step = "close";
        cause = errno;
    }
    if (step) {
        ops.unlink(name.c_str());
        throw FileError::writing(target, step, cause);
    }
}

void syncFolder(const fs::path& target, FileOps& ops)
{
    fs::path folder = target.parent_path();
    if (folder.empty())
        folder = ".";
    const int fd = ops.open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (fd < 0)
        throw FileError::writing(target, "open folder", errno);
    // Some file systems cannot sync a folder and say EINVAL; the rename is done then.
    const bool synced = ops.fsync(fd) == 0 || errno == EINVAL;
    const int savedErrno = errno;
    ops.close(fd);
    if (!synced)
        throw FileError::writing(target, "fsync folder", savedErrno);
}

} // namespace

fs::path followLinks(const fs::path& path)
{
    fs::path current = path;
    for (int hops = 0; hops < kMaxLinkHops; ++hops) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(current, error)))
            return current;
        const fs::path target = fs::read_symlink(current, error);
        if (error)
            throw FileError::writing(path, "read link", error.value());
        current = target.is_absolute() ? target : current.parent_path() / target;
    }
    throw FileError::writing(path, "follow links", ELOOP);
}

void writeFileAtomically(const fs::path& path, std::span<const std::uint8_t> bytes, FileOps& ops,
                         const BeforeReplacing& beforeReplacing)
{
    // The file a link points at is replaced, beside itself; the link stays.
    const fs::path target = followLinks(path);
    std::string name;
    const int fd = createTemporary(target, ops, name);
    if (fd < 0)
        throw FileError::writing(target, "create temporary file", errno);
    copyPermissions(target, fd);
    writeTemporary(target, name, fd, bytes, ops);
    if (beforeReplacing) {
        try {
            beforeReplacing();
        } catch (...) {
            ops.unlink(name.c_str());
            throw;
        }
    }
    if (ops.rename(name.c_str(), target.c_str()) != 0) {
        const int savedErrno = errno;
        ops.unlink(name.c_str());
        throw FileError::writing(target, "rename", savedErrno);
    }
    syncFolder(target, ops);
}

void linkDurably(const fs::path& path, const fs::path& name, FileOps& ops)
{
    const fs::path target = followLinks(path);
    if (ops.link(target.c_str(), name.c_str()) != 0)
        throw FileError::writing(name, "link", errno);
    try {
        syncFolder(name, ops);
    } catch (const FileError&) {
        ops.unlink(name.c_str());
        throw;
    }
}

FileWriter atomicWriter()
{
    return [](const fs::path& path, std::span<const std::uint8_t> bytes,
              const BeforeReplacing& beforeReplacing) {
        writeFileAtomically(path, bytes, systemFileOps(), beforeReplacing);
    };
}

bool isTemporaryFileOf(const fs::path& target, const fs::path& candidate)
{
    if (candidate.parent_path() != target.parent_path())
        return false;
    const std::string prefix = target.filename().string() + kTemporaryMarker;
    return candidate.filename().string().starts_with(prefix);
}

bool isOrphanedTemporaryFile(const fs::path& candidate)
{
    const std::string name = candidate.filename().string();
    const std::size_t marker = name.rfind(kTemporaryMarker);
    if (marker == std::string::npos)
        return false;
    const char* first = name.data() + marker + std::char_traits<char>::length(kTemporaryMarker);
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(first, name.data() + name.size(), pid);
    if (error != std::errc() || end == first || *end != '-' || pid <= 0 || pid == ::getpid())
        return false;
    return ::kill(pid, 0) != 0 && errno == ESRCH;
}

} // namespace store
