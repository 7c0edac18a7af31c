#include "Snapshot.h"

#include "RowReader.h"
#include "Schema.h"
#include "SqliteImage.h"

#include <stdexcept>

namespace store {

Snapshot::Snapshot(jet::Database contents)
{
    if (const std::string mismatch = schemaMismatch(contents); !mismatch.empty())
        throw std::runtime_error(mismatch);
    m_image = std::make_unique<SqliteImage>(std::move(contents));
}

Snapshot::~Snapshot() = default;

Rows Snapshot::query(const QString& sql, const QVariantList& params)
{
    return readRows(m_image->statement(sql.toStdString()), params);
}

} // namespace store
