#pragma once

#include <map>
#include <string>
#include <vector>

namespace velmora::tool {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

// The tool's arguments: a command, its file and further positional arguments,
// and options given as "--name value" or "--name=value".
struct CommandLine
{
    bool help = false;
    std::string command;
    std::vector<std::string> arguments;
    std::map<std::string, std::string> options;
    std::u16string password;
};

// Throws std::invalid_argument with a one-line reason when the arguments do not
// make a valid command.
CommandLine parseCommandLine(int argc, const char* const* argv);

const char* usageText();

} // namespace velmora::tool
