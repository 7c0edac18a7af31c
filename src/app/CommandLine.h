#pragma once

#include <QString>
#include <QStringList>

namespace app {

// What the program was asked on its command line. --help and --version are
// answered without starting the windows; --data-dir is the only option.
struct CommandLine
{
    enum class Action
    {
        Run,
        Help,
        Version,
        Refuse, // a mistake: `message` says which, the program exits with code 2
    };

    Action action = Action::Run;
    QString dataDir; // empty: the folder the program chooses itself
    QString message;

    // `arguments` as the process got them, the program's name first.
    static CommandLine parse(const QStringList& arguments);
};

} // namespace app
