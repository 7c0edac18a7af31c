#pragma once

#include "TableLayout.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace jet::writer {

inline constexpr std::size_t kLongValueHeader = 12;
inline constexpr std::size_t kMaxInlineLongValue = 64;
inline constexpr std::uint32_t kInlineLongValue = 0x80000000u;
inline constexpr std::uint32_t kSingleRowLongValue = 0x40000000u;
inline constexpr std::size_t kMaxLongValueBytes = 0x3FFFFFFF;

// How a row refers to a long value stored outside it.
struct LongValueRef
{
    std::uint32_t lengthAndKind = 0; // first word of the 12-byte header
    std::uint32_t pointer = 0;       // first LVAL row
};

struct RowPlan
{
    std::uint16_t size = 0;
    // Long values of at most 64 bytes sit inside the row; when they would make
    // the row too long, every non-empty long value of the row goes to LVAL rows.
    bool longValuesInline = false;
    bool isInline(std::size_t longValueBytes) const
    {
        return longValueBytes == 0 || (longValuesInline && longValueBytes <= kMaxInlineLongValue);
    }
};

// Turns a row of values into its stored bytes.
class RowEncoder
{
public:
    explicit RowEncoder(const TableLayout& layout) : m_layout(layout) {}

    // Checks every value against its column and sizes the row. Throws
    // CannotWrite naming the column (and row `index`) at fault.
    RowPlan plan(const Row& row, std::size_t index) const;

    // Writes the row into `out`, plan.size zero bytes. `refs` holds the
    // storage of the long values that are not inline, by long-value ordinal.
    void write(const Row& row, const RowPlan& plan, const LongValueRef* refs, std::uint8_t* out) const;

    // Checks the values of a patch: one per column of `columns`, each
    // column of a fixed size (std::logic_error otherwise), each value of its
    // kind and range (CannotWrite naming the column and row `index`).
    void checkPatch(const Row& values, std::span<const std::size_t> columns, std::size_t index) const;
    // Writes checked values of fixed-size columns over a row this encoder
    // wrote: their bytes and null-mask bits become those write() gives them,
    // the rest of the row stays as it is.
    void patch(const Row& values, std::span<const std::size_t> columns, std::span<std::uint8_t> row) const;

    // Stored bytes of a Memo or OLE value (Memo text as stored).
    static std::size_t longValueBytes(const Value& value);

private:
    std::size_t checkedVariableBytes(std::size_t column, const Value& value, std::size_t index) const;
    void checkFixed(std::size_t column, const Value& value, std::size_t index) const;
    [[noreturn]] void failKind(std::size_t column, const Value& value, std::size_t index) const;

    void writeFixed(const ColumnSlot& slot, const Value& value, std::uint8_t* at) const;
    std::size_t writeVariable(const ColumnSlot& slot, const Value& value, const RowPlan& plan,
                              const LongValueRef* refs, std::uint8_t* at) const;

    const TableLayout& m_layout;
};

} // namespace jet::writer
