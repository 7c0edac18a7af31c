#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace testsupport {

// Folder of the reference Jet files, or empty when it is not present
// (a user's machine has no copy of the shared folder).
std::filesystem::path fixturesDir();

std::vector<std::uint8_t> readBytes(const std::filesystem::path& path);

// Output of a command (run through the shell, in the C.UTF-8 locale) and its exit code.
struct CommandResult
{
    std::string output;
    int exitCode = -1;
};
CommandResult run(const std::string& command);
std::string shellQuoted(const std::filesystem::path& path);

// Splits CSV text into records of fields, honouring quotes and line breaks
// inside quoted fields.
std::vector<std::vector<std::string>> parseCsv(const std::string& text);

} // namespace testsupport
