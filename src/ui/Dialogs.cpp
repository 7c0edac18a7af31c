#include "Dialogs.h"

#include "UiTexts.h"

namespace ui {

void Dialogs::information(const QString& title, const QString& text)
{
    showMessage(text, title, DialogIcon::Information, DialogButtons::Ok);
}

void Dialogs::error(const QString& text)
{
    showMessage(text, QString::fromUtf8(texts::errorTitle), DialogIcon::Information, DialogButtons::Ok);
}

bool Dialogs::confirm(const QString& title, const QString& text)
{
    return showMessage(text, title, DialogIcon::Information, DialogButtons::YesNo) == DialogAnswer::Yes;
}

bool Dialogs::report(const store::Outcome& outcome)
{
    if (outcome.isRefused())
        error(outcome.message());
    return outcome.isDone();
}

} // namespace ui
