#include "DataFolder.h"

#include "AtomicFile.h"
#include "Dates.h"
#include "FailureCause.h"
#include "FileError.h"
#include "Schema.h"
#include "StoreError.h"
#include "StoreTexts.h"

#include "jet/Writer.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace store {

namespace fs = std::filesystem;

namespace {

constexpr char kPerUserFolder[] = "velmora";

// Installed programs live under /usr: their folder never holds a household's data.
bool isSystemFolder(const QString& folder)
{
    const QString path = QDir::cleanPath(folder);
    return path == QLatin1String("/usr") || path.startsWith(QLatin1String("/usr/"));
}

bool holdsDataFile(const QString& folder)
{
    return QFileInfo::exists(QDir(folder).filePath(QString::fromUtf8(kDataFileName)));
}

double jetNow()
{
    const QDateTime now = QDateTime::currentDateTime();
    return toJetDate(now.date()).days + now.time().msecsSinceStartOfDay() / 86'400'000.0;
}

} // namespace

DataFolderRequest DataFolderRequest::fromEnvironment(const QString& programDir, const QString& chosenDir)
{
    return {programDir, chosenDir, qEnvironmentVariable("XDG_DATA_HOME"), QDir::homePath()};
}

bool isWritableFolder(const fs::path& folder)
{
    struct stat st
    {
    };
    if (::stat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        return false;
    const mode_t bits = st.st_uid == ::geteuid() ? S_IWUSR : st.st_gid == ::getegid() ? S_IWGRP : S_IWOTH;
    return (st.st_mode & bits) != 0 && ::access(folder.c_str(), W_OK) == 0;
}

DataFolder chooseDataFolder(const DataFolderRequest& request)
{
    if (!request.chosenDir.isEmpty())
        return {QDir(request.chosenDir).absolutePath(), false};
    const QString program = QDir(request.programDir).absolutePath();
    if (holdsDataFile(program) || (!isSystemFolder(program) && isWritableFolder(program.toStdString())))
        return {program, false};
    const QString base = QDir::isAbsolutePath(request.xdgDataHome)
                             ? request.xdgDataHome
                             : QDir(request.home).filePath(QStringLiteral(".local/share"));
    return {QDir::cleanPath(QDir(base).filePath(QString::fromUtf8(kPerUserFolder))), true};
}

void writePreparedFile(const fs::path& path, const std::u16string& password, double creationDate)
{
    jet::Database db = preparedDatabase(creationDate);
    db.password = password;
    writeFileAtomically(path, jet::encodeDatabase(db));
}

bool createDataFileIfMissing(const QString& folder)
{
    const QString file = QDir(folder).filePath(QString::fromUtf8(kDataFileName));
    if (QFileInfo::exists(file))
        return false;
    std::error_code error;
    fs::create_directories(folder.toStdString(), error);
    if (error)
        throw StoreError(StoreError::Kind::CannotWrite,
                         QString::fromUtf8(texts::folderUncreatable)
                             .arg(folder, StoreError::describeErrno(error.value())));
    try {
        writePreparedFile(file.toStdString(), kFilePassword, jetNow());
    } catch (const FileError& e) {
        const QString cause = describeFailure(e);
        throw StoreError(StoreError::Kind::CannotWrite,
                         QString::fromUtf8(texts::fileUncreatable).arg(file, cause), cause);
    }
    return true;
}

} // namespace store
