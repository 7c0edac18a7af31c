#pragma once

#include "Column.h"
#include "Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

// One value per column, in column order.
using Row = std::vector<Value>;

struct Table
{
    std::u16string name;
    std::vector<Column> columns;
    std::vector<Row> rows;
    // The last AutoNumber handed out; the next inserted row gets this + 1, so
    // numbers of deleted rows are never reused.
    std::int32_t lastAutoNumber = 0;

    std::optional<std::size_t> columnIndex(std::u16string_view columnName) const;
};

} // namespace jet
