#include "LedgerFile.h"

#include "store/Schema.h"

#include <QDir>

namespace velmora::test {

LedgerFile::LedgerFile(const DataBuilder& data)
{
    m_folder.write(data.database());
    m_store = std::make_unique<store::Store>(m_folder.path(), &sink);
}

QString LedgerFile::backupPath() const
{
    return QDir(m_folder.path()).filePath(store::kBackupFileName);
}

QStringList LedgerFile::rows(const QString& table)
{
    QStringList lines;
    for (const store::Row& row : store::rows(*m_store, table)) {
        QStringList values;
        for (int i = 0; i < row.size(); ++i)
            values.append(row.value(i).toString());
        lines.append(values.join(QLatin1Char('|')));
    }
    return lines;
}

QString LedgerFile::value(const QString& table, const QString& column, const QString& criteria)
{
    return lookupValue(*m_store, table, column, criteria).toString();
}

QString LedgerFile::amount(const QString& table, const QString& column, const QString& criteria)
{
    return store::Amount::fromStored(lookupValue(*m_store, table, column, criteria)).toPlainString();
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

} // namespace velmora::test
