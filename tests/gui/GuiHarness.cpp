#include "GuiHarness.h"

#include "app/MainWindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <stdexcept>

namespace velmora::test {

GuiHarness::GuiHarness(const ProgramFolder& folder, QDate today)
{
    app::FrameOptions options;
    options.today = [today] { return today; };
    options.splashIntervalMs = kSplashMs;
    options.log = [this](const QString& line) { log.append(line); };
    m_frame = std::make_unique<app::Frame>(folder.path(), dialogs, options);
    QObject::connect(m_frame.get(), &app::Frame::quitRequested, [this](int code) { quitCodes.append(code); });
}

GuiHarness::~GuiHarness() = default;

bool GuiHarness::start()
{
    m_frame->show();
    return m_frame->start();
}

QWidget* GuiHarness::control(QWidget* window, const char* name) const
{
    if (!window)
        throw std::logic_error(std::string("the window holding ") + name + " is not open");
    auto* found = window->findChild<QWidget*>(name);
    if (!found)
        throw std::logic_error(std::string("no control named ") + name);
    return found;
}

QWidget* GuiHarness::mainControl(const char* name) const
{
    return control(m_frame->mainWindow(), name);
}

QString GuiHarness::text(const char* name) const
{
    QWidget* widget = mainControl(name);
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

QStringList GuiHarness::items(const char* name) const
{
    auto* combo = qobject_cast<QComboBox*>(mainControl(name));
    if (!combo)
        throw std::logic_error(std::string(name) + " is not a list");
    QStringList entries;
    for (int i = 0; i < combo->count(); ++i)
        entries.append(combo->itemText(i));
    return entries;
}

void GuiHarness::click(QWidget* window, const char* name)
{
    // A press on the middle of a wide option button can miss its caption;
    // click() presses it as a user would, and does nothing when it is disabled.
    if (auto* button = qobject_cast<QAbstractButton*>(control(window, name)))
        button->click();
    else
        QTest::mouseClick(control(window, name), Qt::LeftButton);
}

void GuiHarness::type(QWidget* field, const QString& text)
{
    for (const QChar ch : text)
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(ch), Qt::NoModifier);
}

} // namespace velmora::test
