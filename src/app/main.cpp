#include "AppTexts.h"
#include "Application.h"
#include "CommandLine.h"
#include "Frame.h"
#include "QtTranslation.h"
#include "store/DataFolder.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "ui/QtDialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int kFailureExitCode = 1;
constexpr int kUsageExitCode = 2;

// Answers --help, --version and mistakes; nullopt when the windows should start.
std::optional<int> answerCommandLine(const app::CommandLine& line)
{
    using Action = app::CommandLine::Action;
    switch (line.action) {
    case Action::Run:
        return std::nullopt;
    case Action::Help:
        std::fputs(app::texts::usage, stdout);
        return 0;
    case Action::Version:
        std::printf("%s\n", qUtf8Printable(QString::fromUtf8(app::texts::version).arg(VELMORA_VERSION)));
        return 0;
    case Action::Refuse:
        break;
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(line.message));
    return kUsageExitCode;
}

// The help page: beside the program when it runs from its build folder, in
// share/velmora of its prefix when it is installed.
QString helpPage(const QString& programDir)
{
    const QDir dir(programDir);
    const QString name = QString::fromUtf8(app::texts::helpFileName);
    if (QFileInfo::exists(dir.filePath(name)))
        return dir.filePath(name);
    return QDir::cleanPath(dir.filePath(QStringLiteral("../share/velmora/") + name));
}

// The folder of the data file, made with the prepared file at the first start
// in the user's own folder; nullopt when that failed and the user was told.
std::optional<store::DataFolder> dataFolder(const QString& dataDir, ui::Dialogs& dialogs, bool& created)
{
    const store::DataFolder folder = store::chooseDataFolder(
        store::DataFolderRequest::fromEnvironment(QApplication::applicationDirPath(), dataDir));
    try {
        created = folder.perUser && store::createDataFileIfMissing(folder.path);
    } catch (const store::StoreError& e) {
        ui::writeToStandardError(e.message());
        dialogs.error(e.message());
        return std::nullopt;
    }
    return folder;
}

// What runs once the event loop does: the box that says where a new data file
// was made, and for the installed-package check a way out as soon as the
// program is up (exit code 0 when the main window is open).
void afterStart(app::Frame& frame, ui::Dialogs& dialogs, const QString& dataFolder, bool created)
{
    if (qEnvironmentVariableIsSet("VELMORA_QUIT_WHEN_STARTED"))
        QTimer::singleShot(0, &frame,
                           [&frame] { QApplication::exit(frame.mainWindow() ? 0 : kFailureExitCode); });
    if (!created)
        return;
    const QString file = QDir(dataFolder).filePath(QString::fromUtf8(store::kDataFileName));
    QTimer::singleShot(0, &frame, [&dialogs, file] {
        dialogs.information(
            QString::fromUtf8(app::texts::dataFileCreatedTitle),
            QString::fromUtf8(app::texts::dataFileCreated).arg(QDir::toNativeSeparators(file)));
    });
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const app::CommandLine line = app::CommandLine::parse(arguments);
    if (const std::optional<int> answered = answerCommandLine(line))
        return *answered;

    app::Application application(argc, argv);
    QApplication::setApplicationName("Velmora");
    QApplication::setApplicationVersion(VELMORA_VERSION);
    QGuiApplication::setDesktopFileName(QStringLiteral("velmora"));
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    app::installRussianQtTexts(application);

    ui::QtDialogs dialogs;
    bool created = false;
    const std::optional<store::DataFolder> folder = dataFolder(line.dataDir, dialogs, created);
    if (!folder)
        return kFailureExitCode;
    app::FrameOptions options;
    options.helpPage = helpPage(QApplication::applicationDirPath());
    app::Frame frame(folder->path, dialogs, options);
    dialogs.setParentWindow(&frame);
    QObject::connect(
        &frame, &app::Frame::quitRequested, &application, [](int exitCode) { QApplication::exit(exitCode); },
        Qt::QueuedConnection);
    frame.show();
    try {
        if (!frame.start())
            return frame.exitCode();
    } catch (...) {
        // The frame stays with what it could show; the user can go on or leave.
        application.reportCurrentException();
    }
    afterStart(frame, dialogs, folder->path, created);
    return QApplication::exec();
}
