#include "WholeFile.h"

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

WholeFile::WholeFile(const Store& store, FileWriter writer)
    : m_path(store.dataFilePath().toStdString()), m_writer(std::move(writer))
{}

std::vector<std::uint8_t> WholeFile::read() const
{
    FileLock lock(m_path);
    lock.take();
    try {
        return readRegularFile(m_path).bytes;
    } catch (const FileError& e) {
        throw readFailure(QString::fromStdString(m_path.string()), e);
    }
}

void WholeFile::replace(std::span<const std::uint8_t> bytes) const
{
    FileLock lock(m_path);
    lock.take();
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
