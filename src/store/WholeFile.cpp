#include "WholeFile.h"

#include "FileLock.h"
#include "Store.h"
#include "StoreError.h"
#include "jet/AtomicFile.h"
#include "jet/Writer.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace store {

namespace fs = std::filesystem;
using Kind = StoreError::Kind;

namespace {

// The store's lock, taken for one whole-file operation and given back at the
// end of the scope. The lock file is the one the store itself uses.
class ScopedLock
{
public:
    explicit ScopedLock(const fs::path& dataFile) : m_lock(fs::path(dataFile.string() + ".lock"))
    {
        const QString shown = QString::fromStdString(dataFile.string());
        try {
            if (!m_lock.tryLock())
                throw StoreError::forFile(Kind::Locked, shown);
        } catch (const std::system_error& e) {
            throw StoreError::forFile(Kind::Unreadable, shown, StoreError::describeErrno(e.code().value()));
        }
    }
    ~ScopedLock() { m_lock.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    FileLock m_lock;
};

void closeQuietly(int fd)
{
    if (fd >= 0)
        ::close(fd);
}

} // namespace

WholeFile::WholeFile(const Store& store, FileWriter writer)
    : m_path(store.dataFilePath().toStdString()), m_writer(std::move(writer))
{
    if (!m_writer)
        m_writer = [](const fs::path& path, std::span<const std::uint8_t> bytes) {
            jet::writeFileAtomically(path, bytes);
        };
}

std::vector<std::uint8_t> WholeFile::readBytes(const fs::path& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw std::system_error(errno, std::generic_category(), path.string());
    struct stat st
    {
    };
    if (::fstat(fd, &st) != 0) {
        const int saved = errno;
        closeQuietly(fd);
        throw std::system_error(saved, std::generic_category(), path.string());
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const int saved = n == 0 ? EIO : errno;
            closeQuietly(fd);
            throw std::system_error(saved, std::generic_category(), path.string());
        }
        done += static_cast<std::size_t>(n);
    }
    closeQuietly(fd);
    return bytes;
}

std::vector<std::uint8_t> WholeFile::read() const
{
    const ScopedLock lock(m_path);
    try {
        return readBytes(m_path);
    } catch (const std::system_error& e) {
        const int number = e.code().value();
        throw StoreError::forFile(number == ENOENT ? Kind::Missing : Kind::Unreadable,
                                  QString::fromStdString(m_path.string()), StoreError::describeErrno(number));
    }
}

void WholeFile::replace(std::span<const std::uint8_t> bytes) const
{
    const ScopedLock lock(m_path);
    const QString shown = QString::fromStdString(m_path.string());
    try {
        m_writer(m_path, bytes);
    } catch (const jet::WriteError& e) {
        throw StoreError::forFile(Kind::CannotWrite, shown, StoreError::describeErrno(e.errorNumber()));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, shown, QString::fromStdString(e.what()));
    }
}

} // namespace store
