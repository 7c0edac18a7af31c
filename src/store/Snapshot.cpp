#include "Snapshot.h"

#include "RowReader.h"
#include "Schema.h"
#include "SqliteImage.h"
#include "jet/Reader.h"

#include <stdexcept>

namespace store {

Snapshot::Snapshot(std::span<const std::uint8_t> bytes)
{
    jet::Database database = jet::readDatabase(bytes, kFilePassword);
    if (const std::string mismatch = schemaMismatch(database); !mismatch.empty())
        throw std::runtime_error(mismatch);
    m_image = std::make_unique<SqliteImage>(std::move(database));
}

Snapshot::~Snapshot() = default;

Rows Snapshot::query(const QString& sql, const QVariantList& params)
{
    return readRows(m_image->statement(sql.toStdString()), params);
}

} // namespace store
