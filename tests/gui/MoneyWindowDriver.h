#pragma once

#include "DataBuilder.h"
#include "FileRows.h"
#include "GuiHarness.h"
#include "app/MainWindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QStringList>

#include <utility>

namespace velmora::test {

// The main window on a data file of our making, driven as a user drives it:
// typing into fields, choosing list entries, pressing buttons; with readers
// for what the window shows and what the data file holds.
class MoneyWindowDriver
{
public:
    explicit MoneyWindowDriver(const DataBuilder& data, QDate today = QDate(2026, 3, 15))
        : m_h(written(m_folder, data), today)
    {}

    bool start() { return m_h.start(); }
    GuiHarness& harness() { return m_h; }
    ScriptedDialogs& dialogs() { return m_h.dialogs; }
    const ProgramFolder& folder() const { return m_folder; }

    QLineEdit* field(const char* name) const { return qobject_cast<QLineEdit*>(m_h.mainControl(name)); }
    QComboBox* list(const char* name) const { return qobject_cast<QComboBox*>(m_h.mainControl(name)); }
    QString text(const char* name) const { return m_h.text(name); }
    bool isEnabled(const char* name) const { return m_h.mainControl(name)->isEnabled(); }

    void enter(const char* name, const QString& typed)
    {
        field(name)->clear();
        GuiHarness::type(field(name), typed);
    }
    void choose(const char* name, const QString& entry)
    {
        list(name)->setCurrentIndex(list(name)->findText(entry));
    }
    void click(const char* button) { m_h.click(m_h.frame().mainWindow(), button); }
    // Chooses a purse and presses "На редакцию".
    void openPurse(const QString& entry)
    {
        choose("Combo1", entry);
        click("VC1");
    }

    // "" when every named field shows its text, else what differs.
    QString fieldsDiffer(const QList<std::pair<const char*, QString>>& expected) const
    {
        QStringList differences;
        for (const auto& [name, shown] : expected)
            if (m_h.text(name) != shown)
                differences.append(
                    QStringLiteral("%1 shows \"%2\", not \"%3\"").arg(name, m_h.text(name), shown));
        return differences.join(QStringLiteral("; "));
    }
    // The boxes shown since the last call, as "title: text".
    QStringList newBoxes()
    {
        const QStringList all = m_h.dialogs.shownTexts();
        const QStringList boxes = all.mid(m_seen);
        m_seen = static_cast<int>(all.size());
        return boxes;
    }

    QStringList rows(const char* table) const { return fileRows(m_folder.path(), table); }
    QString balance() const { return rows("Tech").filter(QStringLiteral("OSTATOK")).value(0); }
    QByteArray bytes() const { return m_folder.bytes(); }

private:
    static const ProgramFolder& written(const ProgramFolder& folder, const DataBuilder& data)
    {
        folder.write(data.database());
        return folder;
    }

    ProgramFolder m_folder;
    GuiHarness m_h;
    int m_seen = 0;
};

} // namespace velmora::test

// Fails the test with the differences when a field shows something else.
#define CHECK_FIELDS(driver, ...)                                                                            \
    do {                                                                                                     \
        const QString differences = (driver).fieldsDiffer(__VA_ARGS__);                                      \
        QVERIFY2(differences.isEmpty(), qPrintable(differences));                                            \
    } while (false)
