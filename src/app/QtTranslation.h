#pragma once

class QCoreApplication;

namespace app {

// Loads Qt's own Russian texts (qtbase_ru), so that standard buttons read
// "Да", "Нет", "Отмена". False when the translation is not installed; the
// program then runs with Qt's English button texts.
bool installRussianQtTexts(QCoreApplication& application);

} // namespace app
