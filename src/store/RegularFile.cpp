#include "RegularFile.h"

#include "FileError.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace store {

namespace {

constexpr off_t kMaxFileBytes = off_t{1} << 31;

// Closes the descriptor on every way out.
struct Descriptor
{
    int fd;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

void checkKind(const std::filesystem::path& path, const struct stat& st)
{
    if (!S_ISREG(st.st_mode))
        throw FileError::reading(path, FileError::Cause::NotRegularFile);
    if (st.st_size > kMaxFileBytes)
        throw FileError::reading(path, FileError::Cause::TooLarge);
}

} // namespace

FileContents readRegularFile(const std::filesystem::path& path)
{
    FileContents contents;
    if (::stat(path.c_str(), &contents.status) != 0)
        throw FileError::reading(path, FileError::Cause::System, errno);
    checkKind(path, contents.status);
    // O_NONBLOCK: should a FIFO take the file's place after the check, opening it does not wait.
    const Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    if (file.fd < 0)
        throw FileError::reading(path, FileError::Cause::System, errno);
    if (::fstat(file.fd, &contents.status) != 0)
        throw FileError::reading(path, FileError::Cause::System, errno);
    checkKind(path, contents.status);
    contents.bytes.resize(static_cast<std::size_t>(contents.status.st_size));
    std::size_t done = 0;
    while (done < contents.bytes.size()) {
        const ssize_t n = ::read(file.fd, contents.bytes.data() + done, contents.bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            throw FileError::reading(path, FileError::Cause::System, n == 0 ? EIO : errno);
        done += static_cast<std::size_t>(n);
    }
    return contents;
}

} // namespace store
