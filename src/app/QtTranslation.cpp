#include "QtTranslation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace app {

bool installRussianQtTexts(QCoreApplication& application)
{
    auto* translator = new QTranslator(&application);
    const bool loaded = translator->load(QLocale(QLocale::Russian, QLocale::Russia), "qtbase", "_",
                                         QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    if (!loaded || !QCoreApplication::installTranslator(translator)) {
        delete translator;
        return false;
    }
    return true;
}

} // namespace app
