#include "FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace store {

FileLock::FileLock(std::filesystem::path lockFile) : m_path(std::move(lockFile)) {}

FileLock::~FileLock()
{
    if (m_fd >= 0)
        ::close(m_fd); // also releases the lock
}

bool FileLock::tryLock()
{
    if (m_locked)
        return true;
    if (m_fd < 0) {
        m_fd = ::open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (m_fd < 0)
            throw std::system_error(errno, std::generic_category(), m_path.string());
    }
    int rc = 0;
    while ((rc = ::flock(m_fd, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) {
    }
    if (rc != 0) {
        if (errno == EWOULDBLOCK)
            return false;
        throw std::system_error(errno, std::generic_category(), m_path.string());
    }
    m_locked = true;
    return true;
}

void FileLock::unlock()
{
    if (m_locked)
        ::flock(m_fd, LOCK_UN);
    m_locked = false;
}

} // namespace store
