#include "FileTables.h"

#include "Error.h"

#include <algorithm>
#include <string>

namespace jet {

void checkPassword(const Header& header, std::u16string_view password)
{
    if (!header.password.empty() && header.password != password)
        throw Error(ErrorCode::NotAValidPassword, "Not a valid password.");
}

Database withoutTables(const Header& header)
{
    Database db;
    db.version = header.version;
    db.password = header.password;
    db.creationDate = header.creationDate;
    db.codePage = header.codePage;
    return db;
}

Table tableOf(const PageSource& pages, const CatalogEntry& entry, const TableDefinition& def)
{
    Table table;
    table.name = entry.name;
    table.lastAutoNumber = def.lastAutoNumber;
    table.columns.reserve(def.columns.size());
    for (const StoredColumn& c : def.columns) {
        table.columns.push_back(c.column);
        // Jet 3 text holds one byte per character; the model counts two, as Jet 4 does.
        if (pages.layout().version == Version::Jet3 && c.column.type == ColumnType::Text)
            table.columns.back().length = static_cast<std::uint16_t>(std::min(2 * c.column.length, 510));
    }
    return table;
}

std::size_t rowCountHint(const TableDefinition& def, std::size_t dataPages)
{
    return std::min<std::size_t>(def.rowCount, dataPages * 255);
}

Error sharedDefinition()
{
    return Error(ErrorCode::DamagedFile, "Damaged database: two tables share one definition",
                 Reason::DuplicateTable);
}

void checkRowCount(std::size_t found, const TableDefinition& def)
{
    if (found != def.rowCount)
        PageSource::damaged(Reason::RowCount,
                            std::to_string(found) + " rows found of the " + std::to_string(def.rowCount) +
                                " its definition states",
                            found, def.rowCount);
}

} // namespace jet
