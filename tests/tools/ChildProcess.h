#pragma once

#include <string>
#include <vector>

namespace velmora::test {

struct ProgramResult
{
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs a program (looked up on PATH when the name has no slash) with these
// arguments and waits for it, capturing both output streams.
ProgramResult runProgram(const std::vector<std::string>& command);

} // namespace velmora::test
