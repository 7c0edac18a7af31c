#pragma once

#include <QString>

#include <filesystem>

namespace store {

// The lock of a data file: an exclusive advisory lock (flock) on the file
// beside it with ".lock" appended. The lock file stays open for the lock's
// lifetime, so taking and releasing the lock again costs one system call
// each; closing it (the destructor) releases the lock too.
class FileLock
{
public:
    explicit FileLock(const std::filesystem::path& dataFile);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Takes the lock without waiting. Throws StoreError: Locked (naming the
    // data file) when another holder has it; LockUnusable (naming the lock
    // file) when the lock file cannot be opened or created, or is not a
    // regular file.
    void take();
    void release();

private:
    void openLockFile();
    [[noreturn]] void fail(const QString& cause) const;

    QString m_dataFile;
    std::filesystem::path m_path;
    int m_fd = -1;
    bool m_locked = false;
};

} // namespace store
