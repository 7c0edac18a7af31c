#pragma once

#include "Table.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace jet::writer {

// Engine system tables carry other column flags and keep their variable
// columns in column order; user tables put Memo and OLE columns last so that
// the short variable values stay early in the row.
enum class TableKind
{
    User,
    System,
};

struct ColumnSlot
{
    ColumnType type = ColumnType::Long;
    std::uint8_t flags = 0; // descriptor flags
    bool fixed = false;     // the value lives in the fixed area
    bool longValue = false; // Memo or OLE
    std::uint16_t fixedOffset = 0;
    // Variable columns: place in the row's offset table. Fixed columns: the
    // number of variable columns before them, as the engine writes it.
    std::uint16_t varIndex = 0;
    std::uint16_t longValueOrdinal = 0; // Memo and OLE: place in longValueColumns()
    std::size_t valueIndex = 0;         // the Value alternative the column takes; 0 (Null) for Decimal
};

// Jet compares names without regard to case; this writer refuses names that
// differ in the case of Latin letters only.
bool sameName(std::u16string_view a, std::u16string_view b);

// Where each column of a table goes in its rows and definition. Checks the
// column definitions and throws CannotWrite when the table cannot be stored.
class TableLayout
{
public:
    TableLayout(const Table& table, TableKind kind);

    const Table& table() const { return m_table; }
    TableKind kind() const { return m_kind; }
    const std::vector<ColumnSlot>& slots() const { return m_slots; }
    // Column numbers in var_index order.
    const std::vector<std::uint16_t>& varOrder() const { return m_varOrder; }
    // Column numbers of the Memo and OLE columns, ascending.
    const std::vector<std::uint16_t>& longValueColumns() const { return m_longValueColumns; }

    std::size_t fixedAreaBytes() const { return m_fixedAreaBytes; }
    std::size_t nullMaskBytes() const { return (m_slots.size() + 7) / 8; }
    // Bytes of a row whose variable values are all empty.
    std::size_t emptyRowBytes() const;

private:
    void checkColumns() const;
    void placeColumns();

    const Table& m_table;
    TableKind m_kind;
    std::vector<ColumnSlot> m_slots;
    std::vector<std::uint16_t> m_varOrder;
    std::vector<std::uint16_t> m_longValueColumns;
    std::size_t m_fixedAreaBytes = 0;
};

} // namespace jet::writer
