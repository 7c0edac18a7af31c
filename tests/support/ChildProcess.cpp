#include "ChildProcess.h"

#include <QProcess>

#include <csignal>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::test {

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
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    QStringList arguments;
    for (std::size_t i = 1; i < command.size(); ++i)
        arguments.append(QString::fromStdString(command[i]));
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QString::fromStdString(command.front()), arguments);
    if (!process.waitForFinished(-1))
        throw std::runtime_error("cannot run " + command.front());
    ProgramResult result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput().toStdString();
    result.err = process.readAllStandardError().toStdString();
    return result;
}

} // namespace velmora::test
