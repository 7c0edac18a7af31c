#include "Application.h"

#include "AppTexts.h"
#include "ui/UiTexts.h"

#include <exception>

namespace app {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {}

Application* Application::instance()
{
    return qobject_cast<Application*>(QCoreApplication::instance());
}

void Application::setReporter(ui::Dialogs* dialogs, ui::DialogErrorSink::Log log)
{
    m_dialogs = dialogs;
    m_log = std::move(log);
}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        reportCurrentException();
    }
    return false;
}

void Application::reportCurrentException()
{
    try {
        throw;
    } catch (const std::exception& e) {
        report(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        report(QString::fromUtf8(texts::unknownCause));
    }
}

void Application::report(const QString& cause)
{
    const QString line = QString::fromUtf8(texts::actionFailedLog).arg(cause);
    if (m_log)
        m_log(line);
    else
        ui::writeToStandardError(line);
    // A failure while the box of another one is open goes to the log only.
    if (!m_dialogs || m_showing)
        return;
    m_showing = true;
    try {
        m_dialogs->showMessage(QString::fromUtf8(texts::actionFailed).arg(cause),
                               QString::fromUtf8(ui::texts::errorTitle), ui::DialogIcon::Critical,
                               ui::DialogButtons::Ok);
    } catch (...) {
        // The log has it; a box that cannot be shown must not end the program.
    }
    m_showing = false;
}

} // namespace app
