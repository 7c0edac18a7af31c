#pragma once

#include <QString>

#include <filesystem>
#include <string>

namespace store {

// Where the program keeps velmora.mdb, its backup and its lock, and how the
// data file is first made.
struct DataFolder
{
    QString path;
    // True for the user's own folder under $XDG_DATA_HOME: the data file is
    // made there at the first start.
    bool perUser = false;
};

// What the choice depends on besides the file system.
struct DataFolderRequest
{
    QString programDir;
    QString chosenDir;   // given on the command line; empty when not
    QString xdgDataHome; // the environment's; empty when unset
    QString home;

    static DataFolderRequest fromEnvironment(const QString& programDir, const QString& chosenDir);
};

// A folder chosen on the command line is used as it is. Otherwise the
// program's own folder, when it already holds a data file or this user may
// write it and it is no system folder (portable use); otherwise
// $XDG_DATA_HOME/velmora, or ~/.local/share/velmora when that variable is
// unset or not an absolute path.
DataFolder chooseDataFolder(const DataFolderRequest& request);

// True when the user may create files in `folder`. The mode bits count for
// root too, whom access() lets write anything.
bool isWritableFolder(const std::filesystem::path& folder);

// The prepared empty data file with `password`, written atomically to
// `path`; `creationDate` is a Jet date. Throws FileError.
void writePreparedFile(const std::filesystem::path& path, const std::u16string& password,
                       double creationDate);

// Makes the folder and the prepared data file in it when it holds no data
// file yet; true when the file was made. Throws StoreError naming the folder
// or the file and the cause.
bool createDataFileIfMissing(const QString& folder);

} // namespace store
