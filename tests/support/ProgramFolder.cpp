#include "ProgramFolder.h"

#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/RegularFile.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace velmora::test {

namespace fs = std::filesystem;

ProgramFolder::ProgramFolder() : m_dir(QStringLiteral("/tmp/velmora-test-XXXXXX"))
{
    if (!m_dir.isValid())
        throw std::runtime_error("cannot create a temporary program folder");
}

fs::path ProgramFolder::operator/(const std::string& name) const
{
    return fs::path(m_dir.path().toStdString()) / name;
}

QString ProgramFolder::dataFilePath() const
{
    return QDir(path()).filePath(store::kDataFileName);
}

fs::path ProgramFolder::dataFile() const
{
    return dataFilePath().toStdString();
}

void ProgramFolder::write(const jet::Database& db) const
{
    store::writeFileAtomically(dataFile(), jet::encodeDatabase(db));
}

void ProgramFolder::writePrepared() const
{
    write(store::preparedDatabase(45000));
}

void ProgramFolder::writeBytes(const QByteArray& bytes) const
{
    test::writeBytes(dataFilePath(), bytes);
}

QByteArray ProgramFolder::bytes() const
{
    // A FIFO in the data file's place would block the read.
    if (!fs::is_regular_file(dataFile()))
        return {};
    return contents(dataFilePath());
}

jet::Database ProgramFolder::readDataFile() const
{
    return jet::readDatabase(store::readRegularFile(dataFile()).bytes, store::kFilePassword);
}

std::vector<std::string> ProgramFolder::strayFiles() const
{
    std::vector<std::string> names;
    for (const QString& name : QDir(path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System))
        if (name != store::kDataFileName && name != QString(store::kDataFileName) + ".lock")
            names.push_back(name.toStdString());
    std::sort(names.begin(), names.end());
    return names;
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

jet::Database sampleDatabase()
{
    jet::Database db = store::preparedDatabase(45000);
    db.table(u"Bills_Dict")->rows = {{std::int32_t{1}, std::u16string(u"Питание")},
                                     {std::int32_t{2}, std::u16string(u"Транспорт")}};
    db.table(u"Purse_Dict")->rows = {
        {std::int32_t{1}, std::u16string(u"Кошелёк"), jet::Null{}, std::u16string()}};
    db.table(u"Purse")->rows = {{std::int32_t{1}, jet::Currency{1'000'000}}};
    return db;
}

} // namespace velmora::test
