#pragma once

#include "QuerySource.h"

#include "jet/Database.h"

#include <memory>

namespace store {

class SqliteImage;

// The contents of a data file, to look at without putting them in place:
// loaded into an SQLite image as the store loads the data file. Read-only.
class Snapshot : public QuerySource
{
public:
    // Throws std::exception when the store cannot load these contents.
    explicit Snapshot(jet::Database contents);
    ~Snapshot() override;
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    // Throws SQLite::Exception for an engine error.
    Rows query(const QString& sql, const QVariantList& params = {}) override;

private:
    std::unique_ptr<SqliteImage> m_image;
};

} // namespace store
