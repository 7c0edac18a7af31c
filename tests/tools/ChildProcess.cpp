#include "ChildProcess.h"

#include <cstdio>
#include <cstdlib>
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

} // namespace

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
    const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
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
