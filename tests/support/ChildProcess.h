#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace velmora::test {

// A forked copy of the test running `work`. The two sides talk through pipes a
// byte at a time, so that the test waits for the child's progress, never for
// a length of time: a kill trial kills after a reported save, a lock holder
// says when it holds the lock and lets go when told.
class ChildProcess
{
public:
    explicit ChildProcess(const std::function<void(ChildProcess&)>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // In the child: one step is done; wait until the parent says go on.
    void report();
    void awaitWord();

    // In the parent: false when the child ended without reporting.
    bool awaitReport();
    void tell();
    // Waits for the child: its exit code, or 128 + the signal that ended it.
    int finish();
    int kill();

private:
    pid_t m_pid = -1;
    int m_up[2] = {-1, -1};
    int m_down[2] = {-1, -1};
};

struct ProgramResult
{
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs a program (looked up on PATH when the name has no slash) with these
// arguments and waits for it, capturing both output streams. It runs in the
// C.UTF-8 locale, whatever the caller's environment says.
ProgramResult runProgram(const std::vector<std::string>& command);

} // namespace velmora::test
