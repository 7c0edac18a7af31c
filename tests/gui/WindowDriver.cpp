#include "WindowDriver.h"

#include "FileRows.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/MainWindow.h"
#include "app/SignInWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "service/ui/ServiceWindow.h"

#include <QTimer>

#include <limits>

namespace velmora::test {

namespace {

const ProgramFolder& written(const ProgramFolder& folder, const DataBuilder& data)
{
    folder.write(data.database());
    return folder;
}

} // namespace

WindowDriver::WindowDriver(const DataBuilder& data, QDate today)
    : m_own(std::make_unique<ProgramFolder>()), m_folder(written(*m_own, data))
{
    open(today);
}

WindowDriver::WindowDriver(const ProgramFolder& folder, QDate today) : m_folder(folder)
{
    open(today);
}

void WindowDriver::open(QDate today)
{
    app::FrameOptions options;
    options.today = [today] { return today; };
    options.splashIntervalMs = std::numeric_limits<int>::max();
    options.log = [this](const QString& line) { log.append(line); };
    m_frame = std::make_unique<app::Frame>(m_folder.path(), dialogs, options);
    QObject::connect(m_frame.get(), &app::Frame::quitRequested, [this](int code) { quitCodes.append(code); });
}

WindowDriver::~WindowDriver() = default;

bool WindowDriver::start()
{
    m_frame->show();
    return m_frame->start();
}

Form WindowDriver::main() const
{
    return Form(m_frame->mainWindow());
}

Form WindowDriver::signIn() const
{
    return Form(m_frame->signInWindow());
}

Form WindowDriver::charts() const
{
    return Form(m_frame->chartsWindow());
}

Form WindowDriver::service()
{
    if (!m_frame->serviceWindow())
        main().click("B2");
    return Form(m_frame->serviceWindow());
}

Form WindowDriver::analytics()
{
    if (!m_frame->analyticsWindow())
        main().click("B1");
    return Form(m_frame->analyticsWindow());
}

void WindowDriver::closeSplash()
{
    if (app::SplashWindow* splash = m_frame->splashWindow())
        QMetaObject::invokeMethod(splash->findChild<QTimer*>(), "timeout");
}

QStringList WindowDriver::newBoxes()
{
    const QStringList all = dialogs.shownTexts();
    const QStringList boxes = all.mid(m_seen);
    m_seen = static_cast<int>(all.size());
    return boxes;
}

QStringList WindowDriver::rows(const char* table) const
{
    return fileRows(m_folder.path(), table);
}

} // namespace velmora::test
