#include "Column.h"

namespace jet {

int fixedWidth(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Numeric:
        return 17;
    default:
        return 0;
    }
}

bool isFixedSize(ColumnType type)
{
    return fixedWidth(type) > 0;
}

bool isLongValue(ColumnType type)
{
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

Column Column::ofType(std::u16string name, ColumnType type, bool autoNumber)
{
    return {std::move(name), type, static_cast<std::uint16_t>(fixedWidth(type)), autoNumber};
}

const char* typeName(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
        return "Boolean";
    case ColumnType::Byte:
        return "Byte";
    case ColumnType::Integer:
        return "Integer";
    case ColumnType::Long:
        return "Long";
    case ColumnType::Currency:
        return "Currency";
    case ColumnType::Single:
        return "Single";
    case ColumnType::Double:
        return "Double";
    case ColumnType::DateTime:
        return "DateTime";
    case ColumnType::Binary:
        return "Binary";
    case ColumnType::Text:
        return "Text";
    case ColumnType::Ole:
        return "OLE";
    case ColumnType::Memo:
        return "Memo";
    case ColumnType::Guid:
        return "GUID";
    case ColumnType::Numeric:
        return "Numeric";
    }
    return "Unknown";
}

} // namespace jet
