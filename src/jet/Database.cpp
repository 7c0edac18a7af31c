#include "Database.h"

namespace jet {

std::optional<std::size_t> Table::columnIndex(std::u16string_view columnName) const
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].name == columnName)
            return i;
    return std::nullopt;
}

Table* Database::table(std::u16string_view name)
{
    for (Table& t : tables)
        if (t.name == name)
            return &t;
    return nullptr;
}

const Table* Database::table(std::u16string_view name) const
{
    return const_cast<Database*>(this)->table(name);
}

} // namespace jet
