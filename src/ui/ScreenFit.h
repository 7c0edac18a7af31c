#pragma once

#include <QScreen>
#include <QWidget>

namespace ui {

// The size a window opens at: the one it wants, or less on a screen too small
// for it (a 1366×768 screen at 200 % leaves 683×384), so its edges and
// buttons stay on the screen.
inline QSize fittedToScreen(const QWidget* window, QSize wanted)
{
    const QScreen* screen = window->screen();
    return screen ? wanted.boundedTo(screen->availableGeometry().size() * 0.95) : wanted;
}

} // namespace ui
