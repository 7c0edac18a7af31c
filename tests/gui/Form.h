#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QString>
#include <QStringList>

namespace velmora::test {

// The program's texts are UTF-8 constants.
inline QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

// One open window of the program, driven by the names of its controls as a
// user drives it. Every reader fails the test (std::logic_error) when the
// window is not open or holds no such control.
class Form
{
public:
    explicit Form(QWidget* window) : m_window(window) {}

    QWidget* widget() const { return m_window; }
    QWidget* control(const char* name) const;
    QLineEdit* field(const char* name) const;
    QComboBox* list(const char* name) const;
    // A field's text, a list's current entry, a button's or label's caption, a frame's title.
    QString text(const char* name) const;
    QStringList items(const char* name) const;
    bool enabled(const char* name) const;

    // Clears a field and types into it key by key (Cyrillic included).
    void enter(const char* name, const QString& typed) const;
    void choose(const char* name, const QString& entry) const;
    // Presses a button as a user would; a disabled one does nothing.
    void click(const char* name) const;
    static void type(QWidget* field, const QString& typed);

private:
    QWidget* m_window;
};

} // namespace velmora::test
