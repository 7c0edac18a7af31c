#pragma once

#include "QuerySource.h"

#include <cstdint>
#include <memory>
#include <span>

namespace store {

class SqliteImage;

// The contents of a data file's bytes, to look at without putting them in
// place: decoded with the data file's password, checked to hold the eight
// tables and loaded into an SQLite image as the store loads the data file.
// Read-only.
class Snapshot : public QuerySource
{
public:
    // Throws std::exception when the store would refuse to open these bytes.
    explicit Snapshot(std::span<const std::uint8_t> bytes);
    ~Snapshot() override;
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    // Throws SQLite::Exception for an engine error.
    Rows query(const QString& sql, const QVariantList& params = {}) override;

private:
    std::unique_ptr<SqliteImage> m_image;
};

} // namespace store
