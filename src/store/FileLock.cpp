#include "FileLock.h"

#include "StoreError.h"
#include "StoreTexts.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace store {

FileLock::FileLock(const std::filesystem::path& dataFile)
    : m_dataFile(QString::fromStdString(dataFile.string())), m_path(dataFile.string() + ".lock")
{}

FileLock::~FileLock()
{
    if (m_fd >= 0)
        ::close(m_fd); // also releases the lock
}

void FileLock::fail(const QString& cause) const
{
    throw StoreError::forFile(StoreError::Kind::LockUnusable, QString::fromStdString(m_path.string()), cause);
}

void FileLock::openLockFile()
{
    // flock needs no write access: read-only, so that a lock file another
    // user left behind (and we may not write) serves as well. O_NONBLOCK: a
    // FIFO in its place must not stop the program in open().
    m_fd = ::open(m_path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    if (m_fd < 0)
        fail(StoreError::describeErrno(errno));
    struct stat st
    {
    };
    const bool examined = ::fstat(m_fd, &st) == 0;
    const int cause = errno;
    if (!examined || !S_ISREG(st.st_mode)) {
        ::close(m_fd);
        m_fd = -1;
        fail(examined ? QString::fromUtf8(texts::causeNotRegular) : StoreError::describeErrno(cause));
    }
}

void FileLock::take()
{
    if (m_locked)
        return;
    if (m_fd < 0)
        openLockFile();
    int rc = 0;
    while ((rc = ::flock(m_fd, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) {
    }
    if (rc != 0) {
        if (errno == EWOULDBLOCK)
            throw StoreError::forFile(StoreError::Kind::Locked, m_dataFile);
        fail(StoreError::describeErrno(errno));
    }
    m_locked = true;
}

void FileLock::release()
{
    if (m_locked)
        ::flock(m_fd, LOCK_UN);
    m_locked = false;
}

} // namespace store
