// A data file that cannot be used ends the program with its reason shown and
// logged, and a non-zero exit code. A damaged or write-protected one is opened
// for reading: the reason is shown (a damaged file's at once), every change is
// refused with it, the file keeps its bytes, and the way back stays open.
#include "WindowDriver.h"
#include "jet/Writer.h"
#include "store/Schema.h"
#include "store/Store.h"
#include "store/StoreTexts.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace velmora::test;

namespace {

enum class Trouble
{
    Missing,
    OtherPassword,
    Garbage,
    WriteProtected,
};

QByteArray encoded(const jet::Database& db)
{
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

void prepare(const ProgramFolder& folder, Trouble trouble)
{
    DataBuilder data;
    data.account(1, "Питание").purse(1, "Кошелёк", "100").bill(QDate(2026, 3, 1), 1, "10");
    if (trouble == Trouble::OtherPassword)
        data.database().password = u"чужой";
    QByteArray bytes = encoded(data.database());
    if (trouble == Trouble::Garbage)
        for (qsizetype i = 0; i < bytes.size(); ++i)
            bytes[i] = char((i * 131 + 7) % 251);
    if (trouble != Trouble::Missing)
        folder.writeBytes(bytes);
    if (trouble == Trouble::WriteProtected)
        QFile::setPermissions(folder.dataFilePath(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
}

} // namespace

Q_DECLARE_METATYPE(Trouble)

class StartUpFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void troubleWithTheDataFile_data();
    void troubleWithTheDataFile();
};

void StartUpFailureTest::troubleWithTheDataFile_data()
{
    using namespace store::texts;
    QTest::addColumn<Trouble>("trouble");
    QTest::addColumn<QString>("message"); // %1 is the data file
    QTest::addColumn<bool>("ends");
    QTest::newRow("missing") << Trouble::Missing << utf8(fileMissing) << true;
    QTest::newRow("other password") << Trouble::OtherPassword << utf8(wrongPassword) << true;
    QTest::newRow("garbage") << Trouble::Garbage << utf8(fileDamaged).arg("%1", utf8(causeNotDataFile))
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
    WindowDriver h(folder);
    const QString expected = message.arg(h.frame().store().dataFilePath());
    QCOMPARE(h.start(), !ends);
    QCOMPARE(bool(h.frame().mainWindow()), !ends);
    if (ends) {
        QVERIFY(h.frame().exitCode() != 0);
        QCOMPARE(h.quitCodes, QList<int>{h.frame().exitCode()});
        QVERIFY(!h.frame().signInWindow());
    } else {
        // Told at once when damaged; a deposit is refused with the same words.
        const qsizetype atStart = trouble == Trouble::WriteProtected ? 0 : 1;
        QCOMPARE(h.dialogs.shown().size(), atStart);
        h.dialogs.answerText(QStringLiteral("Зарплата"));
        h.main().enter("T9", QStringLiteral("100"));
        h.main().click("O1");
        h.main().click("Command1");
        QCOMPARE(h.dialogs.shown().size(), atStart + 1);
    }
    const ShownBox box = h.dialogs.shown().last();
    QCOMPARE(box.title + ": " + box.text, "Ошибка: " + expected);
    QCOMPARE(box.icon, ui::DialogIcon::Critical);
    QCOMPARE(h.log.last(), expected);
    QCOMPARE(folder.bytes(), before);
    if (ends)
        return;
    // The backup replaces a damaged file, never a protected one.
    const QByteArray backup = encoded(DataBuilder().database());
    writeBytes(QDir(folder.path()).filePath(store::kBackupFileName), backup);
    h.dialogs.answer(ui::DialogAnswer::Yes);
    h.service().click("C2");
    const bool writeProtected = trouble == Trouble::WriteProtected;
    QCOMPARE(folder.bytes(), writeProtected ? before : backup);
    QCOMPARE(h.quitCodes, writeProtected ? QList<int>{} : QList<int>{0});
    if (writeProtected)
        QCOMPARE(h.dialogs.shown().last().text, expected);
}

QTEST_MAIN(StartUpFailureTest)
#include "StartUpFailureTest.moc"
