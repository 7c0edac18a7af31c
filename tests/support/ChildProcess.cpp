#include "ChildProcess.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace velmora::test {

namespace {

// A temporary file that is removed when done with.
class CaptureFile
{
public:
    CaptureFile()
    {
        char name[] = "/tmp/velmora-capture-XXXXXX";
        const int fd = mkstemp(name);
        if (fd < 0)
            throw std::runtime_error("cannot create a capture file");
        ::close(fd);
        m_path = name;
    }
    ~CaptureFile() { std::remove(m_path.c_str()); }
    const std::string& path() const { return m_path; }
    std::string contents() const
    {
        std::ifstream in(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

private:
    std::string m_path;
};

// The caller's environment with LC_ALL=C.UTF-8 in place of any locale setting.
std::vector<char*> environmentWithUtf8()
{
    static char utf8[] = "LC_ALL=C.UTF-8";
    std::vector<char*> env;
    for (char** e = environ; *e; ++e)
        if (std::strncmp(*e, "LC_ALL=", 7) != 0)
            env.push_back(*e);
    env.push_back(utf8);
    env.push_back(nullptr);
    return env;
}

} // namespace

ChildProcess::ChildProcess(const std::function<void(ChildProcess&)>& work)
{
    if (::pipe(m_up) != 0 || ::pipe(m_down) != 0)
        throw std::runtime_error("cannot make pipes");
    m_pid = ::fork();
    if (m_pid < 0)
        throw std::runtime_error("cannot fork");
    if (m_pid == 0) {
        int code = 0;
        try {
            work(*this);
        } catch (...) {
            code = 2;
        }
        ::_exit(code);
    }
    ::close(m_up[1]);
    ::close(m_down[0]);
}

ChildProcess::~ChildProcess()
{
    if (m_pid > 0)
        kill();
    ::close(m_up[0]);
    ::close(m_down[1]);
}

void ChildProcess::report()
{
    if (::write(m_up[1], "r", 1) != 1)
        ::_exit(3);
}

void ChildProcess::awaitWord()
{
    char word = 0;
    if (::read(m_down[0], &word, 1) != 1)
        ::_exit(3);
}

bool ChildProcess::awaitReport()
{
    char word = 0;
    return ::read(m_up[0], &word, 1) == 1;
}

void ChildProcess::tell()
{
    if (::write(m_down[1], "g", 1) != 1)
        throw std::runtime_error("the child is gone");
}

int ChildProcess::finish()
{
    int status = 0;
    if (m_pid <= 0 || ::waitpid(m_pid, &status, 0) != m_pid)
        return -1;
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int ChildProcess::kill()
{
    ::kill(m_pid, SIGKILL);
    return finish();
}

ProgramResult runProgram(const std::vector<std::string>& command)
{
    CaptureFile out, err;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.path().c_str(), O_WRONLY | O_TRUNC, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.path().c_str(), O_WRONLY | O_TRUNC, 0);
    std::vector<char*> argv;
    for (const std::string& arg : command)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int spawned =
        posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environmentWithUtf8().data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        throw std::runtime_error("cannot start " + command.front());
    int status = 0;
    waitpid(pid, &status, 0);
    ProgramResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = out.contents();
    result.err = err.contents();
    return result;
}

} // namespace velmora::test
