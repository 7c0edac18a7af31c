#include "SplashWindow.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace app {

namespace {

constexpr QSize kPictureSize(520, 300);

// The picture drawn from its vector source at the screen's pixel ratio, so it
// stays sharp at any scale.
QPixmap splashPicture(qreal ratio)
{
    QSvgRenderer renderer(QStringLiteral(":/velmora/splash.svg"));
    QPixmap pixmap(kPictureSize * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(kPictureSize)));
    return pixmap;
}

} // namespace

SplashWindow::SplashWindow(int intervalMs, QWidget* parent) : QWidget(parent)
{
    setObjectName("Form6");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_image = new QLabel(this);
    m_image->setObjectName("Image1");
    m_image->setPixmap(splashPicture(qGuiApp->devicePixelRatio()));
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
