#include "StartUpFailureTest.h"

#include "DataBuilder.h"
#include "GuiHarness.h"
#include "app/MainWindow.h"
#include "jet/Writer.h"
#include "service/ui/ServiceWindow.h"
#include "store/Store.h"
#include "store/StoreTexts.h"
#include "support/DamagedFile.h"

#include <QFile>
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
    RowsHidden,
    WriteProtected,
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

QString damaged(const char* cause)
{
    return QString::fromUtf8(store::texts::fileDamaged).arg(QStringLiteral("%1"), QString::fromUtf8(cause));
}

void prepare(const ProgramFolder& folder, Trouble trouble)
{
    DataBuilder data;
    data.account(1, "Питание").purse(1, "Кошелёк", "100");
    data.bill(QDate(2026, 3, 1), 1, "10").bill(QDate(2026, 3, 2), 1, "20");
    if (trouble == Trouble::OtherPassword)
        data.database().password = u"чужой";
    std::vector<std::uint8_t> bytes = jet::encodeDatabase(data.database());
    if (trouble == Trouble::RowsHidden)
        testsupport::hidePagesOf(bytes, u"Bills");
    if (trouble == Trouble::Empty)
        bytes.clear();
    if (trouble != Trouble::Missing)
        folder.writeBytes(trouble == Trouble::Garbage
                              ? garbage()
                              : QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                           static_cast<qsizetype>(bytes.size())));
    if (trouble == Trouble::WriteProtected)
        QFile::setPermissions(folder.dataFilePath(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
}

// Puts a sound backup beside the data file and restores it through the
// service window; returns the backup's bytes.
QByteArray restoreBackup(GuiHarness& h, const ProgramFolder& folder)
{
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(DataBuilder().database());
    const QByteArray backup(reinterpret_cast<const char*>(bytes.data()),
                            static_cast<qsizetype>(bytes.size()));
    QFile file(folder.path() + "/velmora_backup.mdb");
    if (!file.open(QIODevice::WriteOnly) || file.write(backup) != backup.size())
        qFatal("cannot write the backup");
    file.close();
    h.click(h.frame().mainWindow(), "B2");
    h.dialogs.answer(ui::DialogAnswer::Yes);
    h.click(h.frame().serviceWindow(), "C2");
    return backup;
}

} // namespace

void StartUpFailureTest::troubleWithTheDataFile_data()
{
    using namespace store::texts;
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<QString>("message"); // %1 is the data file
    QTest::addColumn<bool>("ends");
    QTest::newRow("missing") << Trouble::Missing << utf8(fileMissing) << true;
    QTest::newRow("other password") << Trouble::OtherPassword << utf8(wrongPassword) << true;
    QTest::newRow("locked") << Trouble::LockedByAnotherProcess << utf8(fileLocked) << true;
    QTest::newRow("empty") << Trouble::Empty << damaged(causeEmptyFile) << false;
    QTest::newRow("garbage") << Trouble::Garbage << damaged(causeNotDataFile) << false;
    QTest::newRow("rows hidden") << Trouble::RowsHidden
                                 << QStringLiteral(
                                        "Файл данных %1 повреждён: в таблице Bills найдено 0 строк из "
                                        "2. Изменения невозможны; восстановите резервную копию.")
                                 << false;
    QTest::newRow("write-protected") << Trouble::WriteProtected << utf8(fileReadOnly) << false;
}

void StartUpFailureTest::troubleWithTheDataFile()
{
    QFETCH(Trouble, trouble);
    QFETCH(QString, message);
    QFETCH(bool, ends);
    ProgramFolder folder;
    prepare(folder, trouble);
    const QByteArray before = folder.bytes();
    std::optional<LockHolder> lock;
    if (trouble == Trouble::LockedByAnotherProcess) {
        lock.emplace(folder.dataFilePath() + ".lock");
        QVERIFY(lock->locked());
    }

    GuiHarness h(folder);
    const QString expected = message.arg(h.frame().store().dataFilePath());
    QVERIFY(h.frame().store().dataFilePath().contains(folder.path()));
    QCOMPARE(h.start(), !ends);
    QCOMPARE(bool(h.frame().mainWindow()), !ends);
    if (ends) {
        QVERIFY(h.frame().exitCode() != 0);
        QCOMPARE(h.quitCodes.size(), 1);
        QVERIFY(h.quitCodes.front() != 0);
        QVERIFY(!h.frame().signInWindow());
    } else {
        // Told at once when damaged; a deposit is refused with the same words.
        const qsizetype atStart = trouble == Trouble::WriteProtected ? 0 : 1;
        QCOMPARE(h.dialogs.shown().size(), atStart);
        h.dialogs.answerText(QStringLiteral("Зарплата"));
        GuiHarness::type(h.mainControl("T9"), QStringLiteral("100"));
        h.click(h.frame().mainWindow(), "O1");
        h.click(h.frame().mainWindow(), "Command1");
        QCOMPARE(h.dialogs.shown().size(), atStart + 1);
    }
    const ShownBox box = h.dialogs.shown().last();
    QCOMPARE(box.text, expected);
    QCOMPARE(box.title, QString("Ошибка"));
    QCOMPARE(box.icon, ui::DialogIcon::Critical);
    QCOMPARE(h.log.last(), expected);
    QCOMPARE(folder.hasDataFile(), trouble != Trouble::Missing);
    QCOMPARE(folder.bytes(), before);
    if (!ends) {
        // The way back stays open: the backup replaces a damaged file, never a protected one.
        const QByteArray backup = restoreBackup(h, folder);
        const bool writeProtected = trouble == Trouble::WriteProtected;
        QCOMPARE(folder.bytes(), writeProtected ? before : backup);
        QCOMPARE(h.quitCodes, writeProtected ? QList<int>{} : QList<int>{0});
        if (writeProtected)
            QCOMPARE(h.dialogs.shown().last().text, expected);
    }
}

QTEST_MAIN(StartUpFailureTest)
