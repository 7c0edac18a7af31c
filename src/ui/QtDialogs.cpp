#include "QtDialogs.h"

#include <QInputDialog>
#include <QMessageBox>

namespace ui {

namespace {

QMessageBox::Icon boxIcon(DialogIcon icon)
{
    switch (icon) {
    case DialogIcon::Information:
        return QMessageBox::Information;
    case DialogIcon::Question:
        return QMessageBox::Question;
    case DialogIcon::Warning:
        return QMessageBox::Warning;
    case DialogIcon::Critical:
        return QMessageBox::Critical;
    case DialogIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

} // namespace

DialogAnswer QtDialogs::showMessage(const QString& text, const QString& title, DialogIcon icon,
                                    DialogButtons buttons)
{
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::NoButton, m_parent);
    if (buttons == DialogButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
    }
    const int pressed = box.exec();
    if (buttons == DialogButtons::Ok)
        return DialogAnswer::Ok;
    return pressed == QMessageBox::Yes ? DialogAnswer::Yes : DialogAnswer::No;
}

std::optional<QString> QtDialogs::askText(const QString& prompt, const QString& title, const QString& initial)
{
    bool accepted = false;
    const QString typed =
        QInputDialog::getText(m_parent, title, prompt, QLineEdit::Normal, initial, &accepted);
    if (!accepted)
        return std::nullopt;
    return typed;
}

} // namespace ui
