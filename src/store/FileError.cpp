#include "FileError.h"

#include <cstring>

namespace store {

namespace {

std::string describe(FileError::Cause cause, int errorNumber, const std::string& step)
{
    switch (cause) {
    case FileError::Cause::NotRegularFile:
        return "not a regular file but a folder, device or pipe";
    case FileError::Cause::TooLarge:
        return "larger than 2 GB, more than a database file can hold";
    case FileError::Cause::System:
        break;
    }
    const std::string system = std::strerror(errorNumber);
    return step.empty() ? system : step + " failed: " + system;
}

} // namespace

FileError::FileError(const std::filesystem::path& path, bool write, Cause cause, int errorNumber,
                     std::string step)
    : std::runtime_error((write ? "Cannot write " : "Cannot read ") + path.string() + ": " +
                         describe(cause, errorNumber, step)),
      m_write(write), m_cause(cause), m_errorNumber(errorNumber), m_step(std::move(step)),
      m_detail(describe(cause, errorNumber, m_step))
{}

FileError FileError::reading(const std::filesystem::path& path, Cause cause, int errorNumber)
{
    return FileError(path, false, cause, errorNumber, {});
}

FileError FileError::writing(const std::filesystem::path& path, std::string step, int errorNumber)
{
    return FileError(path, true, Cause::System, errorNumber, std::move(step));
}

} // namespace store
