#pragma once

#include "store/Outcome.h"

#include <QString>

#include <optional>

namespace ui {

enum class DialogIcon
{
    None,
    Information,
    Question,
    Warning,
    Critical,
};

enum class DialogButtons
{
    Ok,
    YesNo,
};

enum class DialogAnswer
{
    Ok,
    Yes,
    No,
};

// Every message and input box of the program goes through here, so that the
// boxes open centred over the frame and tests can answer them.
class Dialogs
{
public:
    virtual ~Dialogs() = default;

    virtual DialogAnswer showMessage(const QString& text, const QString& title, DialogIcon icon,
                                     DialogButtons buttons) = 0;
    // The typed text, or nullopt when the user cancelled.
    virtual std::optional<QString> askText(const QString& prompt, const QString& title,
                                           const QString& initial = {}) = 0;

    // Information icon, one OK button.
    void information(const QString& title, const QString& text);
    // A mistake the user can correct: information icon, OK, title "Ошибка".
    void error(const QString& text);
    // Information icon, Yes and No; true only for Yes.
    bool confirm(const QString& title, const QString& text);
    // What an operation's outcome still has to tell: a refusal's text as an
    // error box. A store failure has been shown already, and success is the
    // window's own box. True when the operation is done.
    bool report(const store::Outcome& outcome);
};

} // namespace ui
