#include "Frame.h"
#include "QtTranslation.h"
#include "ui/QtDialogs.h"

#include <QApplication>
#include <QLocale>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
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
    if (!frame.start())
        return frame.exitCode();
    return QApplication::exec();
}
