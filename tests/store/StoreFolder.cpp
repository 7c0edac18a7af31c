#include "StoreFolder.h"

#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/RegularFile.h"
#include "store/Schema.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace store::test {

namespace fs = std::filesystem;

StoreFolder::StoreFolder()
{
    std::string pattern = (fs::temp_directory_path() / "velmora-store-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("mkdtemp failed");
    m_path = pattern;
}

StoreFolder::~StoreFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

void StoreFolder::writeDataFile(const jet::Database& db) const
{
    store::writeFileAtomically(dataFile(), jet::encodeDatabase(db));
}

void StoreFolder::writePreparedFile() const
{
    writeDataFile(preparedDatabase(45000));
}

std::vector<std::uint8_t> StoreFolder::dataFileBytes() const
{
    return fs::is_regular_file(dataFile()) ? readRegularFile(dataFile()).bytes : std::vector<std::uint8_t>{};
}

jet::Database StoreFolder::readDataFile() const
{
    return jet::readDatabase(dataFileBytes(), kFilePassword);
}

std::vector<std::string> StoreFolder::strayFiles() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
        const std::string name = entry.path().filename().string();
        if (name != "velmora.mdb" && name != "velmora.mdb.lock")
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

jet::Database sampleDatabase()
{
    jet::Database db = preparedDatabase(45000);
    db.table(u"Bills_Dict")->rows = {{std::int32_t{1}, std::u16string(u"Питание")},
                                     {std::int32_t{2}, std::u16string(u"Транспорт")}};
    db.table(u"Purse_Dict")->rows = {
        {std::int32_t{1}, std::u16string(u"Кошелёк"), jet::Null{}, std::u16string()}};
    db.table(u"Purse")->rows = {{std::int32_t{1}, jet::Currency{1'000'000}}};
    return db;
}

} // namespace store::test
