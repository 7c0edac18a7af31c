#include "RowReader.h"

#include "SqlParameters.h"
#include "SqliteImage.h"

#include "RawStatement.h"

namespace store {

void readRows(sqlite3_stmt* statement, const QVariantList& params, const RowHandler& each)
{
    const StatementScope scope(statement);
    sql::bindParameters(statement, params);
    const RowView row(statement);
    while (stepRow(statement))
        each(row);
}

Rows readRows(sqlite3_stmt* statement, const QVariantList& params)
{
    Rows rows;
    readRows(statement, params, keepingRows(rows));
    return rows;
}

RowHandler keepingRows(Rows& rows)
{
    return [&rows, names = std::shared_ptr<const QStringList>()](const RowView& row) mutable {
        if (!names)
            names = row.columnNames();
        rows.push_back(row.toRow(names));
    };
}

} // namespace store
