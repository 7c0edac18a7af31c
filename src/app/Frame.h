#pragma once

#include "SplashWindow.h"
#include "ui/Clock.h"
#include "ui/DialogErrorSink.h"
#include "ui/Dialogs.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>

class QMdiArea;
class QMdiSubWindow;

namespace store {
class Store;
}
namespace service {
class ServiceWindow;
}
namespace analytics {
class AnalyticsWindow;
}
namespace operations {
class OperationsWindow;
}
namespace charts {
class ChartsWindow;
}

namespace app {

class HelpWindow;
class MainWindow;
class SignInWindow;

// What the frame takes from outside besides the program folder and the boxes.
struct FrameOptions
{
    ui::Clock today = ui::systemToday;
    int splashIntervalMs = SplashWindow::kDefaultIntervalMs;
    ui::DialogErrorSink::Log log = ui::writeToStandardError;
    // The help page; empty: velmora-help.html in the data folder.
    QString helpPage;
};

// MDIForm1 "Velmora": the frame all windows of the program live in. start()
// is its load step: it checks the data file, then shows the sign-in window
// or the main window, with the splash above it. The frame never ends the
// process itself; it asks for it with quitRequested().
class Frame : public QMainWindow
{
    Q_OBJECT

public:
    // `dataDir` holds the data file, its backup and its lock.
    Frame(const QString& dataDir, ui::Dialogs& dialogs, FrameOptions options = {});
    ~Frame() override;

    // False when the data file cannot be used: the reason has been shown and
    // written to the log, and quitRequested() carries a non-zero code.
    bool start();

    // The windows while they are open; null once closed.
    MainWindow* mainWindow() const;
    SignInWindow* signInWindow() const;
    SplashWindow* splashWindow() const { return m_splash; }
    HelpWindow* helpWindow() const;
    service::ServiceWindow* serviceWindow() const;
    analytics::AnalyticsWindow* analyticsWindow() const;
    charts::ChartsWindow* chartsWindow() const;
    operations::OperationsWindow* operationsWindow() const;
    QMdiArea* mdiArea() const { return m_mdi; }
    store::Store& store() { return *m_store; }

    bool isQuitting() const { return m_quitting; }
    int exitCode() const { return m_exitCode; }

public slots:
    void showHelp();
    // Form2, the service window; brought forward when it is already open.
    void showServiceWindow();
    // Form3, the analytics window; brought forward when it is already open.
    void showAnalyticsWindow();
    // Form4, the charts window, for the analytics window's month entry and
    // year: a new window draws that period at once, an open one is brought
    // forward with the period in its fields.
    void showChartsWindow(const QString& monthEntry, const QString& year);
    // "Операции" (also Ctrl+F); brought forward when it is already open.
    void showOperationsWindow();

signals:
    void quitRequested(int exitCode);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QMdiSubWindow* addWindow(QWidget* window, QPoint position, Qt::WindowFlags flags = {});
    void showSignIn();
    void showMainWindow();
    void connectServiceButton();
    void connectAnalyticsButton();
    void onServiceMoneyChanged();
    void onServiceAccountsChanged(const QStringList& entries);
    void showSplash();
    void onSignInRequested(const QString& typed);
    void onSignInClosed();
    void onMainWindowClosed();
    void requestQuit(int exitCode);

    void fitToScreen();

    QString m_dataDir;
    ui::Dialogs& m_dialogs;
    FrameOptions m_options;
    ui::DialogErrorSink m_errorSink;
    std::unique_ptr<store::Store> m_store;
    QMdiArea* m_mdi = nullptr;
    QPointer<MainWindow> m_main;
    QPointer<SignInWindow> m_signIn;
    QPointer<SplashWindow> m_splash;
    QPointer<HelpWindow> m_help;
    QPointer<service::ServiceWindow> m_service;
    QPointer<analytics::AnalyticsWindow> m_analytics;
    QPointer<charts::ChartsWindow> m_charts;
    QPointer<operations::OperationsWindow> m_operations;
    bool m_closing = false;
    bool m_quitting = false;
    int m_exitCode = 0;
};

} // namespace app
