#pragma once

#include "ui/DialogErrorSink.h"
#include "ui/Dialogs.h"

#include <QApplication>

namespace app {

// The program's QApplication, with a last barrier: an exception that escapes
// an event handler or a slot does not end the program. The action it came
// from stops there; every transaction it had open has rolled back on the
// way out, so nothing half-done reaches the data file. One line goes to the
// log and one box over the frame tells the user, and the program goes on.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    // The running Application; null when the process runs a plain QApplication.
    static Application* instance();

    // Where escaped exceptions are told: the frame's boxes and log. Without
    // boxes only the log hears of them; without a log, standard error.
    void setReporter(ui::Dialogs* dialogs, ui::DialogErrorSink::Log log);
    ui::Dialogs* reporterDialogs() const { return m_dialogs; }

    bool notify(QObject* receiver, QEvent* event) override;

    // Tells of the exception being handled; call only inside a catch block.
    // Start-up uses it for what escapes before the event loop runs.
    void reportCurrentException();

private:
    void report(const QString& cause);

    ui::Dialogs* m_dialogs = nullptr;
    ui::DialogErrorSink::Log m_log;
    bool m_showing = false;
};

} // namespace app
