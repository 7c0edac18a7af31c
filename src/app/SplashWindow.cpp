#include "SplashWindow.h"

#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

namespace app {

SplashWindow::SplashWindow(int intervalMs, QWidget* parent) : QWidget(parent)
{
    setObjectName("Form6");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_image = new QLabel(this);
    m_image->setObjectName("Image1");
    m_image->setPixmap(QPixmap(":/velmora/splash.png"));
    layout->addWidget(m_image);

    m_timer = new QTimer(this);
    m_timer->setObjectName("Timer1");
    m_timer->setInterval(intervalMs);
    connect(m_timer, &QTimer::timeout, this, &SplashWindow::onTimer);
    m_timer->start();
}

void SplashWindow::onTimer()
{
    m_timer->stop();
    emit finished();
}

} // namespace app
