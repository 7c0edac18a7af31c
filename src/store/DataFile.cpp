#include "DataFile.h"

#include "Schema.h"
#include "StoreError.h"
#include "jet/AtomicFile.h"
#include "jet/Error.h"
#include "jet/Reader.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace store {

namespace fs = std::filesystem;
using Kind = StoreError::Kind;

namespace {

// Closes the descriptor on every way out of readBytes.
struct Descriptor
{
    int fd;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace

DataFile::DataFile(fs::path path, std::u16string password)
    : m_path(std::move(path)), m_password(std::move(password))
{}

QString DataFile::displayPath() const
{
    return QString::fromStdString(m_path.string());
}

std::vector<std::uint8_t> DataFile::readBytes(FileSignature& signature) const
{
    const Descriptor file{::open(m_path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0)
        throw StoreError::forFile(errno == ENOENT ? Kind::Missing : Kind::Unreadable, displayPath(),
                                  StoreError::describeErrno(errno));
    struct stat st
    {
    };
    if (::fstat(file.fd, &st) != 0)
        throw StoreError::forFile(Kind::Unreadable, displayPath(), StoreError::describeErrno(errno));
    signature = FileSignature::fromStat(st);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(file.fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            throw StoreError::forFile(Kind::Unreadable, displayPath(),
                                      StoreError::describeErrno(n == 0 ? EIO : errno));
        done += static_cast<std::size_t>(n);
    }
    return bytes;
}

LoadedFile DataFile::load() const
{
    LoadedFile loaded;
    const std::vector<std::uint8_t> bytes = readBytes(loaded.signature);
    try {
        loaded.database = jet::readDatabase(bytes, m_password);
    } catch (const jet::Error& e) {
        if (e.code() == jet::ErrorCode::NotAValidPassword)
            throw StoreError::forFile(Kind::WrongPassword, displayPath());
        throw StoreError::forFile(Kind::Damaged, displayPath(), QString::fromStdString(e.what()));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::Damaged, displayPath(), QString::fromStdString(e.what()));
    }
    if (const std::string mismatch = schemaMismatch(loaded.database); !mismatch.empty())
        throw StoreError::forFile(Kind::Damaged, displayPath(), QString::fromStdString(mismatch));
    return loaded;
}

void DataFile::removeStaleTemporaries() const
{
    std::error_code error;
    const fs::path folder = m_path.has_parent_path() ? m_path.parent_path() : fs::path(".");
    const fs::path target = folder / m_path.filename();
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (jet::isTemporaryFileOf(target, entry.path()))
            fs::remove(entry.path(), error);
}

} // namespace store
