#pragma once

#include "jet/Database.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace velmora::test {

// A temporary program folder: where the program looks for velmora.mdb.
class ProgramFolder
{
public:
    ProgramFolder();

    QString path() const { return m_dir.path(); }
    QString dataFilePath() const;

    void write(const jet::Database& db) const;
    void writeBytes(const QByteArray& bytes) const;
    // The data file's bytes; empty when there is none.
    QByteArray bytes() const;
    bool hasDataFile() const;

private:
    QTemporaryDir m_dir;
};

// A whole file's bytes, empty when there is none; and `bytes` put in a file's
// place (std::runtime_error when that fails).
QByteArray contents(const QString& path);
void writeBytes(const QString& path, const QByteArray& bytes);

} // namespace velmora::test
