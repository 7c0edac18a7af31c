#include "PrintedDialogs.h"

#include <cstdio>

namespace velmora::screenshots {

ui::DialogAnswer PrintedDialogs::showMessage(const QString& text, const QString& title, ui::DialogIcon,
                                             ui::DialogButtons buttons)
{
    std::printf("box: %s: %s\n", qPrintable(title), qPrintable(text));
    return buttons == ui::DialogButtons::Ok ? ui::DialogAnswer::Ok : ui::DialogAnswer::No;
}

std::optional<QString> PrintedDialogs::askText(const QString& prompt, const QString&, const QString&)
{
    std::printf("input box cancelled: %s\n", qPrintable(prompt));
    return std::nullopt;
}

} // namespace velmora::screenshots
