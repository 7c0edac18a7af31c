#include "RowReader.h"

#include "SqlParameters.h"
#include "SqliteImage.h"

#include <SQLiteCpp/Statement.h>

namespace store {

void readRows(SQLite::Statement& statement, const QVariantList& params, const RowHandler& each)
{
    const StatementScope scope(statement);
    sql::bindParameters(statement, params);
    auto names = std::make_shared<QStringList>();
    const int width = statement.getColumnCount();
    for (int i = 0; i < width; ++i)
        names->append(QString::fromUtf8(statement.getColumnName(i)));
    while (statement.executeStep()) {
        std::vector<QVariant> values;
        values.reserve(static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            values.push_back(sql::readCell(statement.getColumn(i)));
        each(Row(names, std::move(values)));
    }
}

Rows readRows(SQLite::Statement& statement, const QVariantList& params)
{
    Rows rows;
    readRows(statement, params, [&rows](Row row) { rows.push_back(std::move(row)); });
    return rows;
}

} // namespace store
