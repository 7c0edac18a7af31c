#include "NextCode.h"

#include <QStringList>

namespace store {

qlonglong nextCode(QuerySource& source, const std::vector<CodeColumn>& columns)
{
    QStringList largest;
    for (const CodeColumn& c : columns)
        largest.append(QStringLiteral("SELECT MAX(%1) AS code FROM %2").arg(c.column, c.table));
    const Rows rows = source.query(
        QStringLiteral("SELECT MAX(code) FROM (%1)").arg(largest.join(QStringLiteral(" UNION ALL "))));
    // Null, when every column is empty, counts as 0.
    return (rows.empty() ? 0 : rows.front().integer(0)) + 1;
}

} // namespace store
