#include "ScriptedDialogs.h"

namespace velmora::test {

ui::DialogAnswer ScriptedDialogs::showMessage(const QString& text, const QString& title, ui::DialogIcon icon,
                                              ui::DialogButtons buttons)
{
    m_shown.append({text, title, icon, buttons});
    if (buttons == ui::DialogButtons::Ok)
        return ui::DialogAnswer::Ok;
    return m_answers.isEmpty() ? ui::DialogAnswer::No : m_answers.dequeue();
}

std::optional<QString> ScriptedDialogs::askText(const QString& prompt, const QString& title,
                                                const QString& initial)
{
    m_asked.append({prompt, title, initial});
    return m_texts.isEmpty() ? std::nullopt : m_texts.dequeue();
}

QStringList ScriptedDialogs::shownTexts() const
{
    QStringList texts;
    for (const ShownBox& box : m_shown)
        texts.append(box.title + ": " + box.text);
    return texts;
}

} // namespace velmora::test
