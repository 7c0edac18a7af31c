// Where the data file lives: the folder named on the command line, the
// program's own folder when it can be used, else the user's data folder; and
// the first start there, which makes the prepared empty data file.
#include "store/DataFolder.h"
#include "service/Password.h"
#include "store/Schema.h"
#include "store/Store.h"
#include "store/StoreError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

enum class Program
{
    Writable,
    ReadOnly,
    ReadOnlyWithDataFile,
    System,
};

struct Case
{
    const char* what;
    Program program;
    const char* chosen;
    const char* xdg;
    const char* expected; // {program}, {home} stand for those folders
    bool perUser;
};

QString programFolder(const QTemporaryDir& root, Program kind)
{
    if (kind == Program::System)
        return QStringLiteral("/usr/bin");
    const QString dir = root.filePath(QStringLiteral("bin"));
    QDir().mkpath(dir);
    if (kind == Program::ReadOnlyWithDataFile)
        QFile(QDir(dir).filePath(store::kDataFileName)).open(QIODevice::WriteOnly);
    if (kind != Program::Writable)
        ::chmod(dir.toLocal8Bit().constData(), 0555);
    return dir;
}

TEST(DataFolderTest, ChoosesTheFolderByTheRule)
{
    const Case cases[] = {
        {"portable program", Program::Writable, "", "/xdg", "{program}", false},
        {"read-only program folder", Program::ReadOnly, "", "/xdg", "/xdg/velmora", true},
        {"data file already beside the program", Program::ReadOnlyWithDataFile, "", "", "{program}", false},
        {"installed program", Program::System, "", "/xdg", "/xdg/velmora", true},
        {"XDG_DATA_HOME unset", Program::ReadOnly, "", "", "{home}/.local/share/velmora", true},
        {"XDG_DATA_HOME not absolute", Program::System, "", "rel/data", "{home}/.local/share/velmora", true},
        {"folder on the command line", Program::Writable, "/mnt/disk/money", "/xdg", "/mnt/disk/money",
         false},
        {"command line over installed", Program::System, "/mnt/disk", "", "/mnt/disk", false},
    };
    for (const Case& c : cases) {
        QTemporaryDir root;
        const QString program = programFolder(root, c.program);
        const QString home = root.filePath(QStringLiteral("home"));
        const store::DataFolder folder =
            store::chooseDataFolder({program, QString::fromUtf8(c.chosen), QString::fromUtf8(c.xdg), home});
        const QString expected = QString::fromUtf8(c.expected)
                                     .replace(QLatin1String("{program}"), program)
                                     .replace(QLatin1String("{home}"), home);
        EXPECT_EQ(folder.path, expected) << c.what;
        EXPECT_EQ(folder.perUser, c.perUser) << c.what;
        ::chmod(program.toLocal8Bit().constData(), 0755);
    }
}

// The first start makes the folder and a data file the program opens without a
// password; the next start leaves it alone; a folder that cannot be made is named.
TEST(DataFolderTest, FirstStartMakesThePreparedFileOnce)
{
    QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("share/velmora"));
    ASSERT_TRUE(store::createDataFileIfMissing(folder));
    store::Store store(folder);
    EXPECT_EQ(service::Password(store).current(), QString());
    EXPECT_FALSE(store::createDataFileIfMissing(folder));

    const QString blocked = root.filePath(QStringLiteral("blocked"));
    QFile(blocked).open(QIODevice::WriteOnly);
    try {
        store::createDataFileIfMissing(blocked + QStringLiteral("/velmora"));
        ADD_FAILURE() << "a folder under a file was made";
    } catch (const store::StoreError& e) {
        EXPECT_TRUE(e.message().startsWith(QStringLiteral("Не удалось создать папку данных"))) << e.what();
        EXPECT_TRUE(e.message().contains(blocked)) << e.what();
    }
}

} // namespace
