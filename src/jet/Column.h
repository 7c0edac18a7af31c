#pragma once

#include <cstdint>
#include <string>

namespace jet {

enum class ColumnType : std::uint8_t
{
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03,
    Long = 0x04,
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    DateTime = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Numeric = 0x10,
};

struct Column
{
    std::u16string name;
    ColumnType type = ColumnType::Long;
    // Size in bytes as the table definition stores it: Text holds 2 bytes per
    // character, Memo and OLE 0, fixed types their width.
    std::uint16_t length = 4;
    bool autoNumber = false;

    static Column text(std::u16string name, int maxChars)
    {
        return {std::move(name), ColumnType::Text, static_cast<std::uint16_t>(2 * maxChars), false};
    }
    static Column ofType(std::u16string name, ColumnType type, bool autoNumber = false);
    int maxChars() const { return length / 2; }
};

// Width in bytes of a fixed-size type; 0 for variable-size types.
int fixedWidth(ColumnType type);
bool isFixedSize(ColumnType type);
bool isLongValue(ColumnType type); // Memo and OLE: stored through long-value rows
const char* typeName(ColumnType type);

} // namespace jet
