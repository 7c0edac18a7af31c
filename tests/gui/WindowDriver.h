#pragma once

#include "LedgerFile.h"
#include "ProgramFolder.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/Frame.h"
#include "app/MainWindow.h"
#include "app/SignInWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "service/ui/ServiceWindow.h"
#include "ui/Dialogs.h"

#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QLineEdit>
#include <QQueue>

#include <memory>

namespace velmora::test {

// The program's texts are UTF-8 constants.
inline QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

struct ShownBox
{
    QString text;
    QString title;
    ui::DialogIcon icon = ui::DialogIcon::None;
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
    // The input boxes asked so far, as "title: prompt [initial]".
    const QStringList& asked() const { return m_asked; }
    // The boxes shown so far, as "title: text".
    QStringList shownTexts() const;

private:
    QList<ShownBox> m_shown;
    QStringList m_asked;
    QQueue<ui::DialogAnswer> m_answers;
    QQueue<std::optional<QString>> m_texts;
};

// One open window of the program, driven by the names of its controls as a
// user drives it. A window that is not open or a control it lacks throws
// std::logic_error, which fails the test.
class Form
{
public:
    explicit Form(QWidget* window) : m_window(window) {}

    QWidget* widget() const { return m_window; }
    QWidget* control(const char* name) const;
    QLineEdit* field(const char* name) const { return as<QLineEdit>(name); }
    QComboBox* list(const char* name) const { return as<QComboBox>(name); }
    // A field's text, a list's current entry, a label's caption.
    QString text(const char* name) const;
    QStringList texts(std::initializer_list<const char*> names) const;
    QStringList items(const char* name) const;
    bool enabled(const char* name) const { return control(name)->isEnabled(); }

    // Clears a field and types into it key by key (Cyrillic included).
    void enter(const char* name, const QString& typed) const;
    void choose(const char* name, const QString& entry) const;
    // Presses a button as a user would; a disabled one does nothing.
    void click(const char* name) const;
    static void type(QWidget* field, const QString& typed);

private:
    template <class Control> Control* as(const char* name) const
    {
        if (auto* found = qobject_cast<Control*>(control(name)))
            return found;
        throw std::logic_error(std::string(name) + " is a control of another kind");
    }

    QWidget* m_window;
};

// The whole program on a program folder: the frame with scripted boxes, a
// fixed "today" and a log kept in memory. The splash's timer never fires by
// itself; closeSplash() does what it does, so no test races it.
class WindowDriver
{
public:
    // On a folder of its own holding `data`.
    explicit WindowDriver(const DataBuilder& data, QDate today = QDate(2026, 3, 15));
    // On a folder the test prepared.
    explicit WindowDriver(const ProgramFolder& folder, QDate today = QDate(2026, 3, 15));

    // Shows the frame and runs its load step.
    bool start();
    app::Frame& frame() { return *m_frame; }
    const ProgramFolder& folder() const { return m_folder; }

    Form main() const { return Form(m_frame->mainWindow()); }
    Form signIn() const { return Form(m_frame->signInWindow()); }
    Form charts() const { return Form(m_frame->chartsWindow()); }
    // Opened through the main window's Сервис and Аналитика when not open yet.
    Form service() const;
    Form analytics() const;
    void closeSplash();
    // Steps apart by "|": "name=value" fills a field, picks a list's entry
    // (or types it into an editable list that lacks it) or sets a date
    // (dd.MM.yyyy); "yes" answers the next question Yes; any other step
    // presses the control of that name.
    void act(const Form& form, const QString& steps);

    // The boxes shown since the last call, as "title: text".
    QStringList newBoxes();
    // Fails the test unless the boxes shown since the last call begin with
    // `boxes`, in order, and the file was written (or not) since the start or
    // the last call.
    void expect(const QStringList& boxes, bool written);
    // The rows of a table of the data file, as fileRows() gives them.
    QStringList rows(const char* table) const;
    QByteArray bytes() const { return m_folder.bytes(); }
    // The folder of the automatic copies.
    QDir copies() const;

    ScriptedDialogs dialogs;
    QStringList log;
    QList<int> quitCodes;

private:
    void open(QDate today);

    std::unique_ptr<ProgramFolder> m_own;
    const ProgramFolder& m_folder;
    std::unique_ptr<app::Frame> m_frame;
    qsizetype m_seen = 0;
    QByteArray m_before;
};

// Fails the test unless mdb-export reads every table of the folder's data
// file as our reader does.
void expectMdbExportAgrees(const ProgramFolder& folder);

} // namespace velmora::test
