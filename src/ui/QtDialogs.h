#pragma once

#include "Dialogs.h"

#include <QPointer>
#include <QWidget>

namespace ui {

// The boxes as the user sees them: QMessageBox and QInputDialog, parented to
// the frame window so that they open centred over it.
class QtDialogs : public Dialogs
{
public:
    explicit QtDialogs(QWidget* parentWindow = nullptr) : m_parent(parentWindow) {}

    void setParentWindow(QWidget* parentWindow) { m_parent = parentWindow; }

    DialogAnswer showMessage(const QString& text, const QString& title, DialogIcon icon,
                             DialogButtons buttons) override;
    std::optional<QString> askText(const QString& prompt, const QString& title,
                                   const QString& initial = {}) override;

private:
    QPointer<QWidget> m_parent;
};

} // namespace ui
