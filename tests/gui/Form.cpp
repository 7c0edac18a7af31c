#include "Form.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <stdexcept>

namespace velmora::test {

QWidget* Form::control(const char* name) const
{
    if (!m_window)
        throw std::logic_error(std::string("the window holding ") + name + " is not open");
    auto* found = m_window->findChild<QWidget*>(name);
    if (!found)
        throw std::logic_error(std::string("no control named ") + name);
    return found;
}

QLineEdit* Form::field(const char* name) const
{
    auto* edit = qobject_cast<QLineEdit*>(control(name));
    if (!edit)
        throw std::logic_error(std::string(name) + " is not a field");
    return edit;
}

QComboBox* Form::list(const char* name) const
{
    auto* combo = qobject_cast<QComboBox*>(control(name));
    if (!combo)
        throw std::logic_error(std::string(name) + " is not a list");
    return combo;
}

QString Form::text(const char* name) const
{
    QWidget* widget = control(name);
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        return edit->text();
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        return combo->currentText();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text();
    if (auto* label = qobject_cast<QLabel*>(widget))
        return label->text();
    if (auto* group = qobject_cast<QGroupBox*>(widget))
        return group->title();
    throw std::logic_error(std::string("no text in ") + name);
}

QStringList Form::items(const char* name) const
{
    QStringList entries;
    for (int i = 0; i < list(name)->count(); ++i)
        entries.append(list(name)->itemText(i));
    return entries;
}

bool Form::enabled(const char* name) const
{
    return control(name)->isEnabled();
}

void Form::enter(const char* name, const QString& typed) const
{
    field(name)->clear();
    type(field(name), typed);
}

void Form::choose(const char* name, const QString& entry) const
{
    list(name)->setCurrentIndex(list(name)->findText(entry));
}

void Form::click(const char* name) const
{
    if (auto* button = qobject_cast<QAbstractButton*>(control(name)))
        button->click();
    else
        QTest::mouseClick(control(name), Qt::LeftButton);
}

void Form::type(QWidget* field, const QString& typed)
{
    for (const QChar ch : typed)
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(ch), Qt::NoModifier);
}

} // namespace velmora::test
