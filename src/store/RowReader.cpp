#include "RowReader.h"

#include "SqlParameters.h"
#include "SqliteImage.h"

#include <SQLiteCpp/Statement.h>

namespace store {

Rows readRows(SQLite::Statement& statement, const QVariantList& params)
{
    const StatementScope scope(statement);
    sql::bindParameters(statement, params);
    auto names = std::make_shared<QStringList>();
    const int width = statement.getColumnCount();
    for (int i = 0; i < width; ++i)
        names->append(QString::fromUtf8(statement.getColumnName(i)));
    Rows rows;
    while (statement.executeStep()) {
        std::vector<QVariant> values;
        values.reserve(static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            values.push_back(sql::readCell(statement.getColumn(i)));
        rows.emplace_back(names, std::move(values));
    }
    return rows;
}

} // namespace store
