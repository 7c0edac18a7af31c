#pragma once

#include <QMdiSubWindow>
#include <QWidget>

namespace ui {

// Closes a child window of the frame together with the MDI window that holds
// it (which deletes both); a window shown on its own just closes.
inline void closeWindow(QWidget* window)
{
    if (auto* holder = qobject_cast<QMdiSubWindow*>(window->parentWidget()))
        holder->close();
    else
        window->close();
}

} // namespace ui
