#include "Application.h"
#include "Frame.h"
#include "QtTranslation.h"
#include "ui/QtDialogs.h"

#include <QApplication>
#include <QLocale>

int main(int argc, char* argv[])
{
    app::Application application(argc, argv);
    QApplication::setApplicationName("Velmora");
    QApplication::setApplicationVersion(VELMORA_VERSION);
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    app::installRussianQtTexts(application);

    ui::QtDialogs dialogs;
    app::Frame frame(QApplication::applicationDirPath(), dialogs);
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
    return QApplication::exec();
}
