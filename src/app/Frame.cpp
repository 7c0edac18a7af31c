#include "Frame.h"

#include "AppTexts.h"
#include "Application.h"
#include "HelpWindow.h"
#include "MainWindow.h"
#include "SignInWindow.h"
#include "Twips.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "operations/ui/OperationsWindow.h"
#include "service/Password.h"
#include "service/ui/ServiceWindow.h"
#include "store/Store.h"
#include "ui/ScreenFit.h"
#include "ui/UiTexts.h"

#include <QCloseEvent>
#include <QDir>
#include <QIcon>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QShortcut>

// The pictures are compiled into the static library; this makes sure the
// linker keeps them.
static void initResources()
{
    Q_INIT_RESOURCE(velmora);
}

namespace app {

namespace {

constexpr int kFailureExitCode = 1;

} // namespace

Frame::Frame(const QString& dataDir, ui::Dialogs& dialogs, FrameOptions options)
    : m_dataDir(dataDir), m_dialogs(dialogs), m_options(std::move(options)),
      m_errorSink(m_dialogs, m_options.log), m_store(std::make_unique<store::Store>(dataDir, &m_errorSink))
{
    // Automatic copies carry the frame's today with the time of day.
    m_store->keepCopies([today = m_options.today] { return QDateTime(today(), QTime::currentTime()); });
    initResources();
    setObjectName("MDIForm1");
    setWindowTitle(QString::fromUtf8(ui::texts::appTitle));
    setWindowIcon(QIcon(":/velmora/velmora.png"));
    m_mdi = new QMdiArea(this);
    m_mdi->setObjectName("mdiArea");
    // A window larger than the frame can be scrolled to, on any screen and scale.
    m_mdi->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdi->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdi);
    connect(m_mdi, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sub) {
        if (m_operations && sub && sub->widget() == m_operations)
            m_operations->reload();
    });
    fitToScreen();
    auto* help = new QShortcut(QKeySequence(Qt::Key_F1), this);
    help->setContext(Qt::ApplicationShortcut);
    connect(help, &QShortcut::activated, this, &Frame::showHelp);
    // Ctrl+F finds operations once the user has signed in.
    auto* find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::ApplicationShortcut);
    connect(find, &QShortcut::activated, this, [this] {
        if (m_main)
            showOperationsWindow();
    });
    if (auto* application = Application::instance())
        application->setReporter(&m_dialogs, m_options.log);
}

Frame::~Frame()
{
    if (auto* application = Application::instance();
        application && application->reporterDialogs() == &m_dialogs)
        application->setReporter(nullptr, {});
    // The windows use the store; they go first.
    delete m_mdi;
}

// The frame takes most of the screen's free area (the panels left out), up to
// the size the windows need side by side; nothing of it is remembered.
void Frame::fitToScreen()
{
    resize(ui::fittedToScreen(this, {1000, 760}));
    if (const QScreen* screen = this->screen())
        move(screen->availableGeometry().center() - rect().center());
}

MainWindow* Frame::mainWindow() const
{
    return m_main;
}

SignInWindow* Frame::signInWindow() const
{
    return m_signIn;
}

HelpWindow* Frame::helpWindow() const
{
    return m_help;
}

service::ServiceWindow* Frame::serviceWindow() const
{
    return m_service;
}

bool Frame::start()
{
    const std::optional<QString> password = service::Password(*m_store).current();
    if (!password) {
        requestQuit(kFailureExitCode);
        return false;
    }
    if (!password->isEmpty())
        showSignIn();
    else
        showMainWindow();
    showSplash();
    return true;
}

QMdiSubWindow* Frame::addWindow(QWidget* window, QPoint position, Qt::WindowFlags flags)
{
    QMdiSubWindow* sub = m_mdi->addSubWindow(window, flags);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(windowIcon());
    sub->adjustSize();
    sub->move(position);
    sub->show();
    return sub;
}

void Frame::showSignIn()
{
    m_signIn = new SignInWindow;
    connect(m_signIn, &SignInWindow::signInRequested, this, &Frame::onSignInRequested);
    connect(m_signIn, &SignInWindow::closed, this, &Frame::onSignInClosed);
    addWindow(m_signIn, fromTwips(2500, 3000),
              Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                  Qt::WindowCloseButtonHint);
}

void Frame::showMainWindow()
{
    m_main = new MainWindow(*m_store, m_dialogs, m_options.today);
    connect(m_main, &MainWindow::helpRequested, this, &Frame::showHelp);
    connect(m_main, &MainWindow::exitRequested, this, &Frame::close);
    connect(m_main, &MainWindow::closed, this, &Frame::onMainWindowClosed);
    connectServiceButton();
    connectAnalyticsButton();
    connect(m_main, &MainWindow::operationsRequested, this, &Frame::showOperationsWindow);
    m_main->setOperationsAvailable(true);
    m_main->load();
    QMdiSubWindow* sub = addWindow(m_main, fromTwips(500, 1000));
    m_mdi->setActiveSubWindow(sub);
}

void Frame::showSplash()
{
    m_splash = new SplashWindow(m_options.splashIntervalMs);
    QMdiSubWindow* sub =
        addWindow(m_splash, fromTwips(0, 0), Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(m_splash, &SplashWindow::finished, sub, &QMdiSubWindow::close);
    // The window under the splash keeps the keyboard, so the user can type at once.
    if (m_signIn)
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_signIn->parentWidget()));
    else if (m_main)
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_main->parentWidget()));
}

void Frame::onSignInRequested(const QString& typed)
{
    const std::optional<QString> password = service::Password(*m_store).current();
    if (!password)
        return;
    if (typed != *password) {
        // One wrong password ends the program; the user starts it again to retry.
        m_dialogs.error(QString::fromUtf8(texts::wrongPassword));
        close();
        return;
    }
    showMainWindow();
    if (m_signIn)
        m_signIn->parentWidget()->close();
}

void Frame::onSignInClosed()
{
    // Closing the sign-in window without signing in ends the program.
    if (!m_main && !m_closing)
        close();
}

void Frame::onMainWindowClosed()
{
    if (m_closing)
        return;
    // Closing the main window closes every other window and ends the program.
    const QWidget* mainFrame = m_main ? m_main->parentWidget() : nullptr;
    for (QMdiSubWindow* sub : m_mdi->subWindowList())
        if (sub != mainFrame)
            sub->close();
    if (m_help)
        m_help->close();
    requestQuit(m_exitCode);
}

void Frame::connectServiceButton()
{
    connect(m_main, &MainWindow::serviceRequested, this, &Frame::showServiceWindow);
    m_main->setServiceAvailable(true);
}

void Frame::showServiceWindow()
{
    if (m_service) {
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_service->parentWidget()));
        return;
    }
    m_service = new service::ServiceWindow(*m_store, m_dialogs, m_options.today);
    connect(m_service, &service::ServiceWindow::accountsChanged, this, &Frame::onServiceAccountsChanged);
    connect(m_service, &service::ServiceWindow::moneyChanged, this, &Frame::onServiceMoneyChanged);
    // A restore ends the program the way "Выход" does, so the user signs in again.
    connect(m_service, &service::ServiceWindow::programEndRequested, this, &Frame::close);
    m_service->load();
    m_mdi->setActiveSubWindow(addWindow(m_service, fromTwips(300, 300)));
}

analytics::AnalyticsWindow* Frame::analyticsWindow() const
{
    return m_analytics;
}

void Frame::connectAnalyticsButton()
{
    connect(m_main, &MainWindow::analyticsRequested, this, &Frame::showAnalyticsWindow);
    m_main->setAnalyticsAvailable(true);
}

void Frame::showAnalyticsWindow()
{
    if (m_analytics) {
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_analytics->parentWidget()));
        return;
    }
    m_analytics = new analytics::AnalyticsWindow(*m_store, m_dialogs, m_options.today);
    m_analytics->setChartsAvailable(true);
    connect(m_analytics, &analytics::AnalyticsWindow::chartsRequested, this, &Frame::showChartsWindow);
    m_analytics->load();
    m_mdi->setActiveSubWindow(addWindow(m_analytics, fromTwips(150, 150)));
}

operations::OperationsWindow* Frame::operationsWindow() const
{
    return m_operations;
}

void Frame::showOperationsWindow()
{
    if (m_operations) {
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_operations->parentWidget()));
        return;
    }
    m_operations = new operations::OperationsWindow(*m_store, m_dialogs);
    connect(m_operations, &operations::OperationsWindow::moneyChanged, this, &Frame::onServiceMoneyChanged);
    // Activating it reads the operations, now and whenever the user comes back to it.
    m_mdi->setActiveSubWindow(addWindow(m_operations, fromTwips(450, 450)));
}

charts::ChartsWindow* Frame::chartsWindow() const
{
    return m_charts;
}

void Frame::showChartsWindow(const QString& monthEntry, const QString& year)
{
    if (m_charts) {
        m_charts->setPeriod(monthEntry, year);
        m_mdi->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_charts->parentWidget()));
        return;
    }
    m_charts = new charts::ChartsWindow(*m_store, m_dialogs, m_options.today);
    m_charts->drawPeriod(monthEntry, year);
    m_mdi->setActiveSubWindow(addWindow(m_charts, fromTwips(75, 75)));
}

void Frame::onServiceAccountsChanged(const QStringList& entries)
{
    if (m_main)
        m_main->showAccounts(entries);
    if (m_analytics)
        m_analytics->showAccounts(entries);
}

void Frame::onServiceMoneyChanged()
{
    if (!m_main)
        return;
    m_main->refreshMonthStatistics();
    m_main->refreshListsAndBalances();
}

void Frame::showHelp()
{
    const QString path = m_options.helpPage.isEmpty()
                             ? QDir(m_dataDir).filePath(QString::fromUtf8(texts::helpFileName))
                             : m_options.helpPage;
    if (!m_help)
        m_help = new HelpWindow(this);
    if (!m_help->openPage(path)) {
        m_dialogs.error(QString::fromUtf8(texts::helpMissing).arg(QDir::toNativeSeparators(path)));
        return;
    }
    m_help->show();
    m_help->raise();
    m_help->activateWindow();
}

void Frame::closeEvent(QCloseEvent* event)
{
    m_closing = true;
    m_mdi->closeAllSubWindows();
    if (m_help)
        m_help->close();
    event->accept();
    requestQuit(m_exitCode);
}

void Frame::requestQuit(int exitCode)
{
    if (m_quitting)
        return;
    m_quitting = true;
    m_exitCode = exitCode;
    emit quitRequested(exitCode);
}

} // namespace app
