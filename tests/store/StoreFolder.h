#pragma once

#include "jet/Database.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace store::test {

using velmora::test::RecordingSink;

// A temporary program folder, removed with everything in it at the end.
class StoreFolder
{
public:
    StoreFolder();
    ~StoreFolder();
    StoreFolder(const StoreFolder&) = delete;
    StoreFolder& operator=(const StoreFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    QString dir() const { return QString::fromStdString(m_path.string()); }
    std::filesystem::path dataFile() const { return m_path / "velmora.mdb"; }

    // Writes velmora.mdb holding `db` (the prepared empty file by default).
    void writeDataFile(const jet::Database& db) const;
    void writePreparedFile() const;
    std::vector<std::uint8_t> dataFileBytes() const;
    jet::Database readDataFile() const;
    // Names of the files in the folder other than the data file and its lock, sorted.
    std::vector<std::string> strayFiles() const;

private:
    std::filesystem::path m_path;
};

// A prepared database with an extra account and purse, for tests that need rows.
jet::Database sampleDatabase();

} // namespace store::test
