#include "Snapshot.h"

#include "RowReader.h"
#include "SqliteImage.h"

namespace store {

Snapshot::Snapshot(jet::Database contents, std::vector<std::uint8_t>& file)
    : m_loaded(std::make_unique<SqliteImage>(std::move(contents), file)), m_image(m_loaded.get())
{}

Snapshot::Snapshot(jet::Database contents, std::vector<std::u16string> countedOnly)
    : m_loaded(std::make_unique<SqliteImage>(std::move(contents), std::move(countedOnly))),
      m_image(m_loaded.get())
{}

Snapshot::Snapshot(SqliteImage& image) : m_image(&image) {}

Snapshot::~Snapshot() = default;

Rows Snapshot::query(const QString& sql, const QVariantList& params)
{
    return readRows(m_image->statement(sql.toStdString()), params);
}

} // namespace store
