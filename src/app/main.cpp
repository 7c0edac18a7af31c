#include "Frame.h"
#include "QtDialogs.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

// Qt's own texts in Russian, so that standard buttons read "Да", "Нет", "Отмена".
void installQtTranslation(QApplication& application)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(QLocale(QLocale::Russian, QLocale::Russia), "qtbase", "_",
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Velmora");
    QApplication::setApplicationVersion(VELMORA_VERSION);
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    installQtTranslation(application);

    app::QtDialogs dialogs;
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
