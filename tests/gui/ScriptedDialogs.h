#pragma once

#include "ui/Dialogs.h"

#include <QList>
#include <QQueue>
#include <QString>

#include <optional>

namespace velmora::test {

struct ShownBox
{
    QString text;
    QString title;
    ui::DialogIcon icon = ui::DialogIcon::None;
    ui::DialogButtons buttons = ui::DialogButtons::Ok;
};

struct AskedText
{
    QString prompt;
    QString title;
    QString initial;
};

// Boxes without a screen: records every box and input box and gives the
// answers the test queued. A Yes/No box without a queued answer gets No and
// an input box gets Cancel, the answers that change nothing.
class ScriptedDialogs : public ui::Dialogs
{
public:
    ui::DialogAnswer showMessage(const QString& text, const QString& title, ui::DialogIcon icon,
                                 ui::DialogButtons buttons) override;
    std::optional<QString> askText(const QString& prompt, const QString& title,
                                   const QString& initial = {}) override;

    void answer(ui::DialogAnswer answer) { m_answers.enqueue(answer); }
    void answerText(const QString& text) { m_texts.enqueue(text); }
    void cancelText() { m_texts.enqueue(std::nullopt); }

    const QList<ShownBox>& shown() const { return m_shown; }
    const QList<AskedText>& asked() const { return m_asked; }
    // The texts of the boxes shown so far, for readable failure output.
    QStringList shownTexts() const;

private:
    QList<ShownBox> m_shown;
    QList<AskedText> m_asked;
    QQueue<ui::DialogAnswer> m_answers;
    QQueue<std::optional<QString>> m_texts;
};

} // namespace velmora::test
