#pragma once

#include "ProgramFolder.h"
#include "ScriptedDialogs.h"
#include "app/Frame.h"

#include <QDate>
#include <QList>
#include <QStringList>

#include <memory>

namespace velmora::test {

// The program's texts are UTF-8 constants.
inline QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

// The whole program on a temporary program folder: the frame with scripted
// boxes, a fixed "today", a short splash and a log kept in memory.
class GuiHarness
{
public:
    static constexpr int kSplashMs = 40;

    explicit GuiHarness(const ProgramFolder& folder, QDate today = QDate(2026, 3, 15));
    ~GuiHarness();

    app::Frame& frame() { return *m_frame; }
    // Shows the frame and runs its load step.
    bool start();

    // A control of a window, by its name; fails the test when it is missing.
    QWidget* control(QWidget* window, const char* name) const;
    QWidget* mainControl(const char* name) const;
    // The text a control shows: a field's text, a list's current entry, a
    // button's or label's caption, a frame's title.
    QString text(const char* name) const;
    QStringList items(const char* name) const;
    void click(QWidget* window, const char* name);
    // Key presses of any letters, Cyrillic included.
    static void type(QWidget* field, const QString& text);

    ScriptedDialogs dialogs;
    QStringList log;
    QList<int> quitCodes;

private:
    std::unique_ptr<app::Frame> m_frame;
};

} // namespace velmora::test
