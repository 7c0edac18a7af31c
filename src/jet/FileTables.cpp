#include "FileTables.h"

#include "Error.h"

#include <algorithm>

namespace jet {

void checkPassword(const Header& header, std::u16string_view password)
{
    if (!header.password.empty() && header.password != password)
        throw Error(ErrorCode::NotAValidPassword, "Not a valid password.");
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

} // namespace jet
