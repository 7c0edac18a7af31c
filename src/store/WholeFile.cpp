#include "WholeFile.h"

#include "AtomicFile.h"
#include "DataFile.h"
#include "FailureCause.h"
#include "FileError.h"
#include "FileLock.h"
#include "RegularFile.h"
#include "Store.h"
#include "StoreError.h"

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
        if (!m_lock.tryLock())
            throw StoreError::forFile(Kind::Locked, QString::fromStdString(dataFile.string()));
    }
    ~ScopedLock() { m_lock.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    FileLock m_lock;
};

} // namespace

WholeFile::WholeFile(const Store& store, FileWriter writer)
    : m_path(store.dataFilePath().toStdString()), m_writer(std::move(writer))
{
    if (!m_writer)
        m_writer = [](const fs::path& path, std::span<const std::uint8_t> bytes) {
            writeFileAtomically(path, bytes);
        };
}

std::vector<std::uint8_t> WholeFile::read() const
{
    const ScopedLock lock(m_path);
    try {
        return readRegularFile(m_path).bytes;
    } catch (const FileError& e) {
        throw readFailure(QString::fromStdString(m_path.string()), e);
    }
}

void WholeFile::replace(std::span<const std::uint8_t> bytes) const
{
    const ScopedLock lock(m_path);
    const QString shown = QString::fromStdString(m_path.string());
    if (isWriteProtected(m_path))
        throw StoreError::forFile(Kind::ReadOnly, shown);
    try {
        m_writer(m_path, bytes);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, shown, describeFailure(e));
    }
}

} // namespace store
