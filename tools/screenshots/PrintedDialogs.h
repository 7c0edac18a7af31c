#pragma once

#include "ui/Dialogs.h"

namespace velmora::screenshots {

// Boxes without a screen: each is printed on standard output and answered
// with Ok (or No); input boxes are cancelled. The pictures need no answers.
class PrintedDialogs : public ui::Dialogs
{
public:
    ui::DialogAnswer showMessage(const QString& text, const QString& title, ui::DialogIcon icon,
                                 ui::DialogButtons buttons) override;
    std::optional<QString> askText(const QString& prompt, const QString& title,
                                   const QString& initial) override;
};

} // namespace velmora::screenshots
