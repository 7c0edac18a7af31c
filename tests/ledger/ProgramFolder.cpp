#include "ProgramFolder.h"

#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace velmora::test {

ProgramFolder::ProgramFolder() : m_dir(QDir::temp().filePath("velmora-test-XXXXXX"))
{
    if (!m_dir.isValid())
        throw std::runtime_error("cannot create a temporary program folder");
}

QString ProgramFolder::dataFilePath() const
{
    return QDir(path()).filePath(store::kDataFileName);
}

void ProgramFolder::write(const jet::Database& db) const
{
    store::writeFileAtomically(dataFilePath().toStdString(), jet::encodeDatabase(db));
}

void ProgramFolder::writeBytes(const QByteArray& bytes) const
{
    test::writeBytes(dataFilePath(), bytes);
}

QByteArray ProgramFolder::bytes() const
{
    return contents(dataFilePath());
}

bool ProgramFolder::hasDataFile() const
{
    return QFile::exists(dataFilePath());
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

} // namespace velmora::test
