#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace store {

// A file that could not be read or written: the system call that failed and
// its errno, or a file of a kind or size that is never read. what() and
// detail() are English, for logs and the data-file tool; describeFailure()
// says the cause in the user's words.
class FileError : public std::runtime_error
{
public:
    enum class Cause
    {
        System,
        NotRegularFile,
        TooLarge,
    };

    // Reading failed: a system call (with its errno), or the file's kind or size.
    static FileError reading(const std::filesystem::path& path, Cause cause, int errorNumber = 0);
    // A step of writing failed with `errorNumber`.
    static FileError writing(const std::filesystem::path& path, std::string step, int errorNumber);

    bool isWrite() const { return m_write; }
    Cause cause() const { return m_cause; }
    int errorNumber() const { return m_errorNumber; }
    // The failed step of a write ("write", "fsync", "rename", ...); empty for a read.
    const std::string& step() const { return m_step; }
    // The cause without the path.
    const std::string& detail() const { return m_detail; }

private:
    FileError(const std::filesystem::path& path, bool write, Cause cause, int errorNumber, std::string step);

    bool m_write;
    Cause m_cause;
    int m_errorNumber;
    std::string m_step;
    std::string m_detail;
};

} // namespace store
