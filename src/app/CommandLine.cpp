#include "CommandLine.h"

#include "AppTexts.h"

#include <QCommandLineParser>

namespace app {

namespace {

CommandLine refuse(const char* what, const QString& subject)
{
    CommandLine line;
    line.action = CommandLine::Action::Refuse;
    line.message = QString::fromUtf8(texts::badCommandLine).arg(QString::fromUtf8(what).arg(subject));
    return line;
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    const QCommandLineOption dataDir(QStringLiteral("data-dir"), {}, QStringLiteral("dir"));
    QCommandLineParser parser;
    parser.addOptions({help, version, dataDir});
    if (!parser.parse(arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty())
            return refuse(texts::unknownOption, (unknown.first().size() == 1 ? "-" : "--") + unknown.first());
        return refuse(texts::missingValue, QStringLiteral("--data-dir"));
    }
    CommandLine line;
    if (parser.isSet(help))
        line.action = Action::Help;
    else if (parser.isSet(version))
        line.action = Action::Version;
    else if (!parser.positionalArguments().isEmpty())
        return refuse(texts::extraArgument, parser.positionalArguments().first());
    line.dataDir = parser.value(dataDir);
    if (parser.isSet(dataDir) && line.dataDir.isEmpty())
        return refuse(texts::missingValue, QStringLiteral("--data-dir"));
    return line;
}

} // namespace app
