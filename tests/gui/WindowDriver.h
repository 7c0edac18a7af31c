#pragma once

#include "DataBuilder.h"
#include "Form.h"
#include "ProgramFolder.h"
#include "ScriptedDialogs.h"
#include "app/Frame.h"

#include <QDate>
#include <QList>
#include <QStringList>

#include <memory>

namespace velmora::test {

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
    ~WindowDriver();

    // Shows the frame and runs its load step.
    bool start();
    app::Frame& frame() { return *m_frame; }
    const ProgramFolder& folder() const { return m_folder; }

    Form main() const;
    Form signIn() const;
    Form charts() const;
    // Opened through the main window's Сервис and Аналитика when not open yet.
    Form service();
    Form analytics();
    void closeSplash();

    // The boxes shown since the last call, as "title: text".
    QStringList newBoxes();
    // The rows of a table of the data file, as fileRows() gives them.
    QStringList rows(const char* table) const;
    QByteArray bytes() const { return m_folder.bytes(); }

    ScriptedDialogs dialogs;
    QStringList log;
    QList<int> quitCodes;

private:
    void open(QDate today);

    std::unique_ptr<ProgramFolder> m_own;
    const ProgramFolder& m_folder;
    std::unique_ptr<app::Frame> m_frame;
    int m_seen = 0;
};

} // namespace velmora::test
