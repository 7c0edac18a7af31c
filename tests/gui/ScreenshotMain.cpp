// Pictures of the windows for the documentation: the frame with the main
// window filled from a data folder, the sign-in window, the splash and, when
// the folder holds velmora-help.html, the help window.
// Usage: gui_screenshots DATA_FOLDER OUTPUT_FOLDER
#include "ScriptedDialogs.h"
#include "app/Frame.h"
#include "app/HelpWindow.h"
#include "app/MainWindow.h"
#include "app/SignInWindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMdiSubWindow>
#include <QTest>

#include <cstdio>

namespace {

bool save(QWidget* widget, const QString& path)
{
    const bool saved = widget && widget->grab().save(path);
    std::printf("%s %s\n", saved ? "saved" : "FAILED", qPrintable(path));
    return saved;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: gui_screenshots DATA_FOLDER OUTPUT_FOLDER\n");
        return 2;
    }
    const QString dataFolder = QString::fromLocal8Bit(argv[1]);
    const QDir output(QString::fromLocal8Bit(argv[2]));
    velmora::test::ScriptedDialogs dialogs;
    app::FrameOptions options;
    options.splashIntervalMs = 200;
    app::Frame frame(dataFolder, dialogs, options);
    frame.show();
    if (!frame.start())
        return 1;
    bool ok = true;
    QTest::qWait(50);
    ok &= save(frame.splashWindow(), output.filePath("splash.png"));
    ok &= save(&frame, output.filePath("start-up.png"));
    if (frame.signInWindow())
        ok &= save(frame.signInWindow()->parentWidget(), output.filePath("sign-in.png"));
    if (!QTest::qWaitFor([&] { return !frame.splashWindow(); }, 5000))
        return 1;
    if (frame.mainWindow())
        ok &= save(&frame, output.filePath("main-window.png"));
    if (QFile::exists(QDir(dataFolder).filePath("velmora-help.html"))) {
        frame.showHelp();
        ok &= save(frame.helpWindow(), output.filePath("help.png"));
    }
    return ok ? 0 : 1;
}
