#include "LedgerFile.h"

namespace velmora::test {

LedgerFile::LedgerFile(const DataBuilder& data)
{
    m_folder.write(data.database());
    m_store = std::make_unique<store::Store>(m_folder.path(), &sink);
}

std::string LedgerFile::money(const QString& sql, const QVariantList& params)
{
    // A store of its own reads what the file holds, not what memory holds.
    store::Store reader(m_folder.path());
    const store::Rows rows = query(reader, sql, params);
    if (rows.empty() || !rows.front().value(0).isValid())
        return "null";
    return rows.front().amount(0).toPlainString().toStdString();
}

int LedgerFile::count(const QString& table)
{
    store::Store reader(m_folder.path());
    return static_cast<int>(rows(reader, table).size());
}

} // namespace velmora::test
