#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;

namespace app {

// Form6: the product picture shown for a few seconds at start-up. It closes
// itself when its timer fires, whatever the user does meanwhile.
class SplashWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kDefaultIntervalMs = 3000;

    explicit SplashWindow(int intervalMs = kDefaultIntervalMs, QWidget* parent = nullptr);

    bool isTimerRunning() const { return m_timer->isActive(); }

signals:
    // The timer fired; the window that holds the splash closes it.
    void finished();

private:
    void onTimer();

    QLabel* m_image = nullptr;
    QTimer* m_timer = nullptr;
};

} // namespace app
