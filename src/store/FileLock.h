#pragma once

#include <QString>

#include <filesystem>

namespace store {

// An exclusive advisory lock (flock) on a lock file beside the data file.
// The lock file stays open for the lock's lifetime, so taking and releasing
// the lock again costs one system call each.
class FileLock
{
public:
    explicit FileLock(std::filesystem::path lockFile);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Takes the lock without waiting: false when another holder has it.
    // Throws StoreError (LockUnusable, naming the lock file) when the lock
    // file cannot be opened or created, or is not a regular file.
    bool tryLock();
    void unlock();
    bool isLocked() const { return m_locked; }
    const std::filesystem::path& path() const { return m_path; }

private:
    void openLockFile();
    [[noreturn]] void fail(const QString& cause) const;

    std::filesystem::path m_path;
    int m_fd = -1;
    bool m_locked = false;
};

} // namespace store
