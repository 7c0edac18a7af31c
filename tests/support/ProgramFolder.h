#pragma once

#include "jet/Database.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora::test {

// A temporary program folder, where the program looks for velmora.mdb; it is
// removed with everything in it at the end. Made under /tmp, whatever TMPDIR
// the caller has.
class ProgramFolder
{
public:
    ProgramFolder();

    QString path() const { return m_dir.path(); }
    std::filesystem::path operator/(const std::string& name) const;
    QString dataFilePath() const;
    std::filesystem::path dataFile() const;

    // Writes velmora.mdb holding `db`; the prepared empty file for writePrepared().
    void write(const jet::Database& db) const;
    void writePrepared() const;
    void writeBytes(const QByteArray& bytes) const;
    // The data file's bytes; empty when there is none.
    QByteArray bytes() const;
    jet::Database readDataFile() const;
    // Names of the files in the folder other than the data file and its lock, sorted.
    std::vector<std::string> strayFiles() const;

private:
    QTemporaryDir m_dir;
};

// A whole file's bytes, empty when there is none; and `bytes` put in a file's
// place (std::runtime_error when that fails).
QByteArray contents(const QString& path);
void writeBytes(const QString& path, const QByteArray& bytes);

// A prepared database with two accounts and a purse, for tests that need rows.
jet::Database sampleDatabase();

} // namespace velmora::test
