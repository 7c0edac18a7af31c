#include "ServiceData.h"

#include "store/Schema.h"

#include <QDir>

namespace velmora::test {

ServiceData::ServiceData(const DataBuilder& data)
{
    m_folder.write(data.database());
    m_store = std::make_unique<store::Store>(m_folder.path(), &sink);
}

QString ServiceData::backupPath() const
{
    return QDir(m_folder.path()).filePath(store::kBackupFileName);
}

QStringList ServiceData::rows(const QString& table)
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

QString ServiceData::value(const QString& table, const QString& column, const QString& criteria)
{
    return lookupValue(*m_store, table, column, criteria).toString();
}

QString ServiceData::amount(const QString& table, const QString& column, const QString& criteria)
{
    return store::Amount::fromStored(lookupValue(*m_store, table, column, criteria)).toPlainString();
}

} // namespace velmora::test
