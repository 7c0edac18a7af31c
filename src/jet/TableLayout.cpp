#include "TableLayout.h"

#include "PageBuffer.h"
#include "WriteFailure.h"

#include <string>

namespace jet::writer {

namespace {

constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxNameLength = 64;
constexpr int kMaxVariableBytes = 510;

void checkName(const Table& table, const Column* column, const std::u16string& name)
{
    std::string why;
    if (name.empty())
        why = "the name is empty";
    else if (name.size() > kMaxNameLength)
        why = "the name has " + std::to_string(name.size()) + " characters, at most 64 are allowed";
    else
        return;
    column ? failColumn(table, *column, why) : failTable(table, why);
}

// Index of the Value alternative a column of `type` holds.
std::size_t valueIndexOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
        return Value(false).index();
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
        return Value(std::int32_t{}).index();
    case ColumnType::Currency:
        return Value(Currency{}).index();
    case ColumnType::Single:
        return Value(float{}).index();
    case ColumnType::Double:
        return Value(double{}).index();
    case ColumnType::DateTime:
        return Value(DateTime{}).index();
    case ColumnType::Text:
    case ColumnType::Memo:
        return Value(std::u16string{}).index();
    case ColumnType::Binary:
    case ColumnType::Ole:
        return Value(Bytes{}).index();
    case ColumnType::Guid:
        return Value(Guid{}).index();
    case ColumnType::Numeric:
        break; // only Null can be written to a Decimal column
    }
    return Value(Null{}).index();
}

bool isKnownType(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Currency:
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::DateTime:
    case ColumnType::Binary:
    case ColumnType::Text:
    case ColumnType::Ole:
    case ColumnType::Memo:
    case ColumnType::Guid:
    case ColumnType::Numeric:
        return true;
    }
    return false;
}

void checkColumn(const Table& table, const Column& c)
{
    checkName(table, &c, c.name);
    if (!isKnownType(c.type))
        failColumn(table, c, "unknown column type " + std::to_string(int(c.type)));
    const int width = fixedWidth(c.type);
    if (width > 0 && c.length != width)
        failColumn(table, c,
                   "a " + std::string(typeName(c.type)) + " column is " + std::to_string(width) +
                       " bytes wide, not " + std::to_string(c.length));
    if (c.type == ColumnType::Text && (c.length < 2 || c.length > kMaxVariableBytes || c.length % 2 != 0))
        failColumn(table, c,
                   "a Text column holds 1 to 255 characters, not " + std::to_string(c.length) + " bytes");
    if (c.type == ColumnType::Binary && (c.length < 1 || c.length > kMaxVariableBytes))
        failColumn(table, c, "a Binary column holds 1 to 510 bytes, not " + std::to_string(c.length));
    if (c.autoNumber && c.type != ColumnType::Long)
        failColumn(table, c, "only a Long column can be an AutoNumber");
}

} // namespace

bool sameName(std::u16string_view a, std::u16string_view b)
{
    const auto fold = [](char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - u'a' + u'A') : c; };
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (fold(a[i]) != fold(b[i]))
            return false;
    return true;
}

TableLayout::TableLayout(const Table& table, TableKind kind) : m_table(table), m_kind(kind)
{
    checkColumns();
    placeColumns();
    if (emptyRowBytes() > kMaxRowBytes)
        failTable(table, "its columns need " + std::to_string(emptyRowBytes()) +
                             " bytes per row, more than the 4060 a row can hold");
}

void TableLayout::checkColumns() const
{
    checkName(m_table, nullptr, m_table.name);
    const auto& columns = m_table.columns;
    if (columns.empty())
        failTable(m_table, "it has no columns");
    if (columns.size() > kMaxColumns)
        failTable(m_table, "it has " + std::to_string(columns.size()) + " columns, at most 255 are allowed");
    for (std::size_t i = 0; i < columns.size(); ++i) {
        checkColumn(m_table, columns[i]);
        for (std::size_t j = 0; j < i; ++j)
            if (sameName(columns[j].name, columns[i].name))
                failColumn(m_table, columns[i], "the table has two columns of this name");
    }
}

void TableLayout::placeColumns()
{
    const bool system = m_kind == TableKind::System;
    std::vector<std::uint16_t> longValues;
    std::uint16_t varsSoFar = 0;
    for (std::size_t i = 0; i < m_table.columns.size(); ++i) {
        const Column& c = m_table.columns[i];
        ColumnSlot s;
        s.type = c.type;
        s.fixed = isFixedSize(c.type);
        s.longValue = isLongValue(c.type);
        s.valueIndex = valueIndexOf(c.type);
        s.flags = static_cast<std::uint8_t>((s.fixed ? 0x03 : 0x02) | (system ? 0x10 : 0) |
                                            (c.autoNumber ? 0x04 : 0));
        if (s.fixed) {
            s.varIndex = varsSoFar;
            if (c.type != ColumnType::Boolean) {
                s.fixedOffset = static_cast<std::uint16_t>(m_fixedAreaBytes);
                m_fixedAreaBytes += fixedWidth(c.type);
            }
        } else {
            ++varsSoFar;
            if (s.longValue) {
                s.longValueOrdinal = static_cast<std::uint16_t>(m_longValueColumns.size());
                m_longValueColumns.push_back(static_cast<std::uint16_t>(i));
            }
            if (s.longValue && !system)
                longValues.push_back(static_cast<std::uint16_t>(i));
            else
                m_varOrder.push_back(static_cast<std::uint16_t>(i));
        }
        m_slots.push_back(s);
    }
    m_varOrder.insert(m_varOrder.end(), longValues.begin(), longValues.end());
    for (std::size_t k = 0; k < m_varOrder.size(); ++k)
        m_slots[m_varOrder[k]].varIndex = static_cast<std::uint16_t>(k);
}

std::size_t TableLayout::emptyRowBytes() const
{
    const std::size_t varTrailer = m_varOrder.empty() ? 0 : 2 + 2 * m_varOrder.size() + 2;
    return 2 + m_fixedAreaBytes + varTrailer + nullMaskBytes();
}

} // namespace jet::writer
