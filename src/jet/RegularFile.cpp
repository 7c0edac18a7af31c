#include "RegularFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace jet {

namespace {

constexpr off_t kMaxFileBytes = off_t{1} << 31;

std::string describe(ReadError::Cause cause, int errorNumber)
{
    switch (cause) {
    case ReadError::Cause::NotRegularFile:
        return "not a regular file but a folder, device or pipe";
    case ReadError::Cause::TooLarge:
        return "larger than 2 GB, more than a database file can hold";
    case ReadError::Cause::System:
        break;
    }
    return std::strerror(errorNumber);
}

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
        throw ReadError(path, ReadError::Cause::NotRegularFile);
    if (st.st_size > kMaxFileBytes)
        throw ReadError(path, ReadError::Cause::TooLarge);
}

} // namespace

ReadError::ReadError(const std::filesystem::path& path, Cause cause, int errorNumber)
    : Error(ErrorCode::FileNotFound, "Cannot read " + path.string() + ": " + describe(cause, errorNumber)),
      m_cause(cause), m_detail(describe(cause, errorNumber)), m_errorNumber(errorNumber)
{}

FileContents readRegularFile(const std::filesystem::path& path)
{
    FileContents contents;
    if (::stat(path.c_str(), &contents.status) != 0)
        throw ReadError(path, ReadError::Cause::System, errno);
    checkKind(path, contents.status);
    // O_NONBLOCK: should a FIFO take the file's place after the check, opening it does not wait.
    const Descriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    if (file.fd < 0)
        throw ReadError(path, ReadError::Cause::System, errno);
    if (::fstat(file.fd, &contents.status) != 0)
        throw ReadError(path, ReadError::Cause::System, errno);
    checkKind(path, contents.status);
    contents.bytes.resize(static_cast<std::size_t>(contents.status.st_size));
    std::size_t done = 0;
    while (done < contents.bytes.size()) {
        const ssize_t n = ::read(file.fd, contents.bytes.data() + done, contents.bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            throw ReadError(path, ReadError::Cause::System, n == 0 ? EIO : errno);
        done += static_cast<std::size_t>(n);
    }
    return contents;
}

} // namespace jet
