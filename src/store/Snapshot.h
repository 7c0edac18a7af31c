#pragma once

#include "QuerySource.h"

#include "jet/Database.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace store {

class SqliteImage;

// The contents of a data file, to look at without putting them in place:
// loaded into an SQLite image as the store loads the data file. Read-only
// until the store takes the image over.
class Snapshot : public QuerySource
{
public:
    // Keeps `file` as the image's last file, as the store does for the data
    // file it reads. Throws std::exception when the store cannot load these
    // contents.
    Snapshot(jet::Database contents, std::vector<std::uint8_t>& file);
    // Contents to look at only, no file kept; the tables named in
    // `countedOnly` are checked and counted, and stay empty.
    Snapshot(jet::Database contents, std::vector<std::u16string> countedOnly);
    // The contents of an image someone else keeps.
    explicit Snapshot(SqliteImage& image);
    ~Snapshot() override;
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    // Throws SQLite::Exception for an engine error.
    Rows query(const QString& sql, const QVariantList& params = {}) override;

    const SqliteImage& image() const { return *m_image; }
    // The image it loaded, for a store to work on once the file is the data file.
    std::unique_ptr<SqliteImage> release() && { return std::move(m_loaded); }

private:
    std::unique_ptr<SqliteImage> m_loaded;
    SqliteImage* m_image;
};

} // namespace store
