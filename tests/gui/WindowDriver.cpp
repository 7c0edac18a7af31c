#include "WindowDriver.h"

#include "CsvExport.h"
#include "LedgerFile.h"
#include "jet/Reader.h"
#include "store/Schema.h"

#include <QAbstractButton>
#include <QDateEdit>
#include <QLabel>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <limits>

namespace velmora::test {

ui::DialogAnswer ScriptedDialogs::showMessage(const QString& text, const QString& title, ui::DialogIcon icon,
                                              ui::DialogButtons buttons)
{
    m_shown.append({text, title, icon});
    if (buttons == ui::DialogButtons::Ok)
        return ui::DialogAnswer::Ok;
    return m_answers.isEmpty() ? ui::DialogAnswer::No : m_answers.dequeue();
}

std::optional<QString> ScriptedDialogs::askText(const QString& prompt, const QString& title,
                                                const QString& initial)
{
    m_asked.append(title + ": " + prompt + " [" + initial + "]");
    return m_texts.isEmpty() ? std::nullopt : m_texts.dequeue();
}

QStringList ScriptedDialogs::shownTexts() const
{
    QStringList texts;
    for (const ShownBox& box : m_shown)
        texts.append(box.title + ": " + box.text);
    return texts;
}

QWidget* Form::control(const char* name) const
{
    if (!m_window)
        throw std::logic_error(std::string("the window holding ") + name + " is not open");
    if (auto* found = m_window->findChild<QWidget*>(name))
        return found;
    throw std::logic_error(std::string("no control named ") + name);
}

QString Form::text(const char* name) const
{
    QWidget* widget = control(name);
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        return edit->text();
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        return combo->currentText();
    return as<QLabel>(name)->text();
}

QStringList Form::texts(std::initializer_list<const char*> names) const
{
    QStringList shown;
    for (const char* name : names)
        shown.append(text(name));
    return shown;
}

QStringList Form::items(const char* name) const
{
    QStringList entries;
    for (int i = 0; i < list(name)->count(); ++i)
        entries.append(list(name)->itemText(i));
    return entries;
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

WindowDriver::WindowDriver(const DataBuilder& data, QDate today)
    : m_own(std::make_unique<ProgramFolder>()), m_folder(*m_own)
{
    m_folder.write(data.database());
    open(today);
}

WindowDriver::WindowDriver(const ProgramFolder& folder, QDate today) : m_folder(folder)
{
    open(today);
}

void WindowDriver::open(QDate today)
{
    app::FrameOptions options;
    options.today = [today] { return today; };
    options.splashIntervalMs = std::numeric_limits<int>::max();
    options.log = [this](const QString& line) { log.append(line); };
    m_frame = std::make_unique<app::Frame>(m_folder.path(), dialogs, options);
    QObject::connect(m_frame.get(), &app::Frame::quitRequested, [this](int code) { quitCodes.append(code); });
}

bool WindowDriver::start()
{
    m_before = bytes();
    m_frame->show();
    return m_frame->start();
}

Form WindowDriver::service() const
{
    if (!m_frame->serviceWindow())
        main().click("B2");
    return Form(m_frame->serviceWindow());
}

Form WindowDriver::analytics() const
{
    if (!m_frame->analyticsWindow())
        main().click("B1");
    return Form(m_frame->analyticsWindow());
}

void WindowDriver::closeSplash()
{
    if (app::SplashWindow* splash = m_frame->splashWindow())
        QMetaObject::invokeMethod(splash->findChild<QTimer*>(), "timeout");
}

void WindowDriver::act(const Form& form, const QString& steps)
{
    for (const QString& step : steps.split('|', Qt::SkipEmptyParts)) {
        const QByteArray name = step.section('=', 0, 0).toUtf8();
        const QString value = step.section('=', 1);
        if (step == "yes")
            dialogs.answer(ui::DialogAnswer::Yes);
        else if (!step.contains('='))
            form.click(name);
        else if (auto* date = qobject_cast<QDateEdit*>(form.control(name)))
            date->setDate(QDate::fromString(value, "dd.MM.yyyy"));
        else if (auto* list = qobject_cast<QComboBox*>(form.control(name))) {
            if (list->isEditable() && !value.isEmpty() && list->findText(value) < 0)
                list->setEditText(value);
            else
                form.choose(name, value);
        } else
            form.enter(name, value);
    }
}

QStringList WindowDriver::newBoxes()
{
    const QStringList all = dialogs.shownTexts();
    const QStringList boxes = all.mid(m_seen);
    m_seen = all.size();
    return boxes;
}

void WindowDriver::expect(const QStringList& boxes, bool written)
{
    const QStringList shown = newBoxes();
    const QString said = shown.join('\n');
    QVERIFY2(shown.size() == boxes.size(), qPrintable(said));
    for (qsizetype i = 0; i < boxes.size(); ++i)
        QVERIFY2(shown[i].startsWith(boxes[i]), qPrintable(said + "\ndoes not begin with\n" + boxes[i]));
    const QByteArray now = bytes();
    QVERIFY2((now != m_before) == written, qPrintable(said));
    m_before = now;
}

QStringList WindowDriver::rows(const char* table) const
{
    return fileRows(m_folder.path(), table);
}

QDir WindowDriver::copies() const
{
    return QDir(m_folder.path() + "/" + store::kCopiesFolderName);
}

// mdb-export prints each half of a character outside the Basic Multilingual
// Plane as "?" and a text only up to a NUL in it.
void expectMdbExportAgrees(const ProgramFolder& folder)
{
    const QByteArray bytes = folder.bytes();
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    static const QRegularExpression fromNul(QStringLiteral("\\x{0}(?:[^\"]|\"\")*"));
    for (const jet::Table& table :
         jet::readDatabase({data, static_cast<std::size_t>(bytes.size())}, store::kFilePassword).tables) {
        QString ours = QString::fromStdString(velmora::exportCsv(table)).remove(fromNul);
        for (QChar& c : ours)
            c = c.isSurrogate() ? QChar(u'?') : c;
        QProcess exporter;
        exporter.start("mdb-export", {folder.dataFilePath(), QString::fromStdU16String(table.name)});
        QVERIFY(exporter.waitForFinished(-1) && exporter.exitCode() == 0);
        QCOMPARE(QString::fromUtf8(exporter.readAllStandardOutput()), ours);
    }
}

} // namespace velmora::test
