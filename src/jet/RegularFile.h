#pragma once

#include "Error.h"

#include <cstdint>
#include <filesystem>
#include <sys/stat.h>
#include <vector>

namespace jet {

// Why a file could not be read: a failed system call (with its errno), a
// file that is not a regular one, or one larger than any Jet file can be.
class ReadError : public Error
{
public:
    enum class Cause
    {
        System,
        NotRegularFile,
        TooLarge,
    };
    ReadError(const std::filesystem::path& path, Cause cause, int errorNumber = 0);
    Cause cause() const { return m_cause; }
    int errorNumber() const { return m_errorNumber; }
    // The cause in English, without the path.
    const std::string& detail() const { return m_detail; }

private:
    Cause m_cause;
    std::string m_detail;
    int m_errorNumber;
};

// A file's bytes and the status of exactly the descriptor they were read from.
struct FileContents
{
    std::vector<std::uint8_t> bytes;
    struct stat status
    {
    };
};

// Reads a whole regular file, following symbolic links. A FIFO, device or
// folder is refused before it is opened (opening or reading one can block or
// never end), and so is a file over 2 GB. Throws ReadError.
FileContents readRegularFile(const std::filesystem::path& path);

} // namespace jet
