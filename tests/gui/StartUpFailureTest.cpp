#include "StartUpFailureTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "store/Store.h"
#include "store/StoreTexts.h"

#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace velmora::test;

namespace {

enum class Trouble
{
    Missing,
    Empty,
    Garbage,
    OtherPassword,
    LockedByAnotherProcess,
};

} // namespace

Q_DECLARE_METATYPE(Trouble)

namespace {

// Another process holding the data file's lock for as long as this object lives.
class LockHolder
{
public:
    explicit LockHolder(const QString& lockFile)
    {
        const QByteArray path = lockFile.toLocal8Bit();
        if (pipe(m_ready) != 0 || pipe(m_release) != 0)
            qFatal("pipe failed");
        m_pid = fork();
        if (m_pid == 0) {
            const int fd = ::open(path.constData(), O_RDWR | O_CREAT, 0644);
            const char ok = (fd >= 0 && flock(fd, LOCK_EX) == 0) ? '1' : '0';
            (void)!write(m_ready[1], &ok, 1);
            char ignored;
            (void)!read(m_release[0], &ignored, 1);
            _exit(0);
        }
        char ok = '0';
        (void)!read(m_ready[0], &ok, 1);
        m_locked = ok == '1';
    }
    ~LockHolder()
    {
        (void)!write(m_release[1], "x", 1);
        waitpid(m_pid, nullptr, 0);
        for (int fd : {m_ready[0], m_ready[1], m_release[0], m_release[1]})
            ::close(fd);
    }
    bool locked() const { return m_locked; }

private:
    int m_ready[2] = {-1, -1};
    int m_release[2] = {-1, -1};
    pid_t m_pid = -1;
    bool m_locked = false;
};

QByteArray garbage()
{
    QByteArray bytes(8192, '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char((i * 131 + 7) % 251);
    return bytes;
}

} // namespace

void StartUpFailureTest::unusableDataFileEndsTheProgram_data()
{
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<QString>("message"); // %1 is the data file; the text may go on after it
    QTest::newRow("missing") << Trouble::Missing << QString::fromUtf8(store::texts::fileMissing);
    QTest::newRow("empty") << Trouble::Empty
                           << QString::fromUtf8(store::texts::fileDamaged).section("%2", 0, 0);
    QTest::newRow("garbage") << Trouble::Garbage
                             << QString::fromUtf8(store::texts::fileDamaged).section("%2", 0, 0);
    QTest::newRow("other password") << Trouble::OtherPassword
                                    << QString::fromUtf8(store::texts::wrongPassword);
    QTest::newRow("locked") << Trouble::LockedByAnotherProcess << QString::fromUtf8(store::texts::fileLocked);
}

void StartUpFailureTest::unusableDataFileEndsTheProgram()
{
    QFETCH(Trouble, trouble);
    QFETCH(QString, message);
    ProgramFolder folder;
    DataBuilder data;
    data.password("pw");
    if (trouble == Trouble::Empty)
        folder.writeBytes({});
    else if (trouble == Trouble::Garbage)
        folder.writeBytes(garbage());
    else if (trouble != Trouble::Missing) {
        if (trouble == Trouble::OtherPassword)
            data.database().password = u"чужой";
        folder.write(data.database());
    }
    const QByteArray before = folder.bytes();
    std::optional<LockHolder> lock;
    if (trouble == Trouble::LockedByAnotherProcess) {
        lock.emplace(folder.dataFilePath() + ".lock");
        QVERIFY(lock->locked());
    }

    GuiHarness h(folder);
    QVERIFY(!h.start());
    QVERIFY(h.frame().exitCode() != 0);
    QCOMPARE(h.quitCodes.size(), 1);
    QVERIFY(h.quitCodes.front() != 0);
    QVERIFY(!h.frame().mainWindow());
    QVERIFY(!h.frame().signInWindow());

    const QString expected = message.arg(h.frame().store().dataFilePath());
    QVERIFY(h.frame().store().dataFilePath().contains(folder.path()));
    QCOMPARE(h.dialogs.shown().size(), 1);
    const ShownBox box = h.dialogs.shown().front();
    QVERIFY2(box.text.startsWith(expected), qPrintable(box.text));
    QCOMPARE(box.title, QString("Ошибка"));
    QCOMPARE(box.icon, ui::DialogIcon::Critical);
    QCOMPARE(h.log, QStringList{box.text});

    QCOMPARE(folder.hasDataFile(), trouble != Trouble::Missing);
    QCOMPARE(folder.bytes(), before);
}

QTEST_MAIN(StartUpFailureTest)
