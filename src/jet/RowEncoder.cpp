#include "RowEncoder.h"

#include "ByteOrder.h"
#include "PageBuffer.h"
#include "TextEncoding.h"
#include "WriteFailure.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace jet::writer {

namespace {

const char* valueKind(const Value& value)
{
    static const char* const kinds[] = {"a Null",   "a Yes/No", "a whole-number", "a Currency", "a Single",
                                        "a Double", "a date",   "a text",         "a binary",   "a GUID"};
    static_assert(std::size(kinds) == std::variant_size_v<Value>);
    return kinds[value.index()];
}

} // namespace

std::size_t RowEncoder::longValueBytes(const Value& value)
{
    if (const auto* text = std::get_if<std::u16string>(&value))
        return storedTextSize(*text).value_or(0);
    if (const auto* bytes = std::get_if<Bytes>(&value))
        return bytes->size();
    return 0;
}

void RowEncoder::failKind(std::size_t column, const Value& value, std::size_t index) const
{
    const Column& c = m_layout.table().columns[column];
    failValue(m_layout.table(), c, index,
              std::string(valueKind(value)) + " value cannot be stored in a " + typeName(c.type) + " column");
}

void RowEncoder::checkFixed(std::size_t column, const Value& value, std::size_t index) const
{
    const ColumnSlot& slot = m_layout.slots()[column];
    if (value.index() != slot.valueIndex)
        failKind(column, value, index);
    const ColumnType type = slot.type;
    if (type != ColumnType::Byte && type != ColumnType::Integer)
        return;
    const std::int32_t n = std::get<std::int32_t>(value);
    const bool byte = type == ColumnType::Byte;
    if (byte ? (n < 0 || n > 255) : (n < -32768 || n > 32767))
        failValue(m_layout.table(), m_layout.table().columns[column], index,
                  std::to_string(n) + (byte ? " is outside 0..255" : " is outside -32768..32767"));
}

std::size_t RowEncoder::checkedVariableBytes(std::size_t column, const Value& value, std::size_t index) const
{
    const Column& c = m_layout.table().columns[column];
    if (value.index() != m_layout.slots()[column].valueIndex)
        failKind(column, value, index);
    if (c.type == ColumnType::Binary) {
        const std::size_t n = std::get<Bytes>(value).size();
        if (n > c.length)
            failValue(m_layout.table(), c, index,
                      std::to_string(n) + " bytes do not fit the column's " + std::to_string(c.length));
        return n;
    }
    if (c.type == ColumnType::Text) {
        const std::size_t chars = std::get<std::u16string>(value).size();
        if (chars > std::size_t(c.maxChars()))
            failValue(m_layout.table(), c, index,
                      "the text has " + std::to_string(chars) + " characters, the column holds at most " +
                          std::to_string(c.maxChars()));
    }
    const auto* text = std::get_if<std::u16string>(&value);
    const std::optional<std::size_t> bytes = text ? storedTextSize(*text) : std::get<Bytes>(value).size();
    if (!bytes)
        failValue(m_layout.table(), c, index,
                  "a text starting with U+FEFF cannot hold characters U+xx00 (such as U+0100 or U+0400)");
    if (*bytes > kMaxLongValueBytes)
        failValue(m_layout.table(), c, index, "the value is larger than 1 GB");
    return *bytes;
}

RowPlan RowEncoder::plan(const Row& row, std::size_t index) const
{
    const Table& table = m_layout.table();
    if (row.size() != table.columns.size())
        failTable(table, "row " + std::to_string(index + 1) + " has " + std::to_string(row.size()) +
                             " values for " + std::to_string(table.columns.size()) + " columns");
    std::size_t size = m_layout.emptyRowBytes();
    std::size_t inlineBytes = 0;
    std::size_t widest = 0, widestBytes = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const ColumnSlot& slot = m_layout.slots()[i];
        if (isNull(row[i]))
            continue;
        if (slot.fixed) {
            checkFixed(i, row[i], index);
            continue;
        }
        const std::size_t bytes = checkedVariableBytes(i, row[i], index);
        const std::size_t inRow = slot.longValue ? kLongValueHeader : bytes;
        size += inRow;
        if (slot.longValue && bytes <= kMaxInlineLongValue)
            inlineBytes += bytes;
        if (inRow >= widestBytes) {
            widest = i;
            widestBytes = inRow;
        }
    }
    if (size + inlineBytes <= kMaxRowBytes)
        return {static_cast<std::uint16_t>(size + inlineBytes), true};
    if (size > kMaxRowBytes)
        failValue(table, table.columns[widest], index,
                  "the row needs " + std::to_string(size) + " bytes, more than the 4060 a row can hold");
    return {static_cast<std::uint16_t>(size), false};
}

void RowEncoder::checkPatch(const Row& values, std::span<const std::size_t> columns, std::size_t index) const
{
    if (values.size() != columns.size())
        throw std::logic_error("a patch needs one value per patched column");
    for (std::size_t k = 0; k < columns.size(); ++k) {
        if (columns[k] >= m_layout.slots().size() || !m_layout.slots()[columns[k]].fixed)
            throw std::logic_error("only columns of a fixed size can be patched");
        if (!isNull(values[k]))
            checkFixed(columns[k], values[k], index);
    }
}

void RowEncoder::patch(const Row& values, std::span<const std::size_t> columns,
                       std::span<std::uint8_t> row) const
{
    std::uint8_t* const mask = row.data() + row.size() - m_layout.nullMaskBytes();
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const std::size_t column = columns[k];
        const ColumnSlot& slot = m_layout.slots()[column];
        const auto bit = std::uint8_t(1u << (column % 8));
        mask[column / 8] &= std::uint8_t(~bit);
        // A Yes/No value is its null-mask bit alone; Null is No.
        if (slot.type == ColumnType::Boolean) {
            if (const bool* yes = std::get_if<bool>(&values[k]); yes && *yes)
                mask[column / 8] |= bit;
            continue;
        }
        std::uint8_t* const at = row.data() + 2 + slot.fixedOffset;
        std::memset(at, 0, static_cast<std::size_t>(fixedWidth(slot.type)));
        if (isNull(values[k]))
            continue;
        mask[column / 8] |= bit;
        writeFixed(slot, values[k], at);
    }
}

void RowEncoder::writeFixed(const ColumnSlot& slot, const Value& value, std::uint8_t* at) const
{
    switch (slot.type) {
    case ColumnType::Byte:
        *at = static_cast<std::uint8_t>(std::get<std::int32_t>(value));
        break;
    case ColumnType::Integer:
        le::put16(at, static_cast<std::uint16_t>(std::get<std::int32_t>(value)));
        break;
    case ColumnType::Long:
        le::put32(at, static_cast<std::uint32_t>(std::get<std::int32_t>(value)));
        break;
    case ColumnType::Currency:
        le::put64(at, static_cast<std::uint64_t>(std::get<Currency>(value).units));
        break;
    case ColumnType::Single:
        le::putF32(at, std::get<float>(value));
        break;
    case ColumnType::Double:
        le::putF64(at, std::get<double>(value));
        break;
    case ColumnType::DateTime:
        le::putF64(at, std::get<DateTime>(value).days);
        break;
    case ColumnType::Guid:
        std::memcpy(at, std::get<Guid>(value).bytes.data(), 16);
        break;
    default:
        break;
    }
}

std::size_t RowEncoder::writeVariable(const ColumnSlot& slot, const Value& value, const RowPlan& plan,
                                      const LongValueRef* refs, std::uint8_t* at) const
{
    const auto* text = std::get_if<std::u16string>(&value);
    const auto* bytes = std::get_if<Bytes>(&value);
    if (!slot.longValue) {
        if (text) {
            writeStoredText(*text, at);
            return *storedTextSize(*text);
        }
        std::memcpy(at, bytes->data(), bytes->size());
        return bytes->size();
    }
    const std::size_t length = longValueBytes(value);
    if (!plan.isInline(length)) {
        const LongValueRef& ref = refs[slot.longValueOrdinal];
        le::put32(at, ref.lengthAndKind);
        le::put32(at + 4, ref.pointer);
        return kLongValueHeader;
    }
    le::put32(at, static_cast<std::uint32_t>(length) | kInlineLongValue);
    if (text)
        writeStoredText(*text, at + kLongValueHeader);
    else if (length > 0)
        std::memcpy(at + kLongValueHeader, bytes->data(), length);
    return kLongValueHeader + length;
}

void RowEncoder::write(const Row& row, const RowPlan& plan, const LongValueRef* refs, std::uint8_t* out) const
{
    const auto& slots = m_layout.slots();
    std::uint8_t* const mask = out + plan.size - m_layout.nullMaskBytes();
    const auto present = [mask](std::size_t column) { mask[column / 8] |= std::uint8_t(1u << (column % 8)); };
    le::put16(out, static_cast<std::uint16_t>(slots.size()));
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (!slots[i].fixed || isNull(row[i]))
            continue;
        // A Yes/No value is its null-mask bit alone.
        if (slots[i].type == ColumnType::Boolean) {
            if (std::get<bool>(row[i]))
                present(i);
            continue;
        }
        present(i);
        writeFixed(slots[i], row[i], out + 2 + slots[i].fixedOffset);
    }
    const auto& varOrder = m_layout.varOrder();
    if (varOrder.empty())
        return;
    // From the mask backwards: the variable-column count, then the offsets
    // of values 0, 1, ... and last the end of the variable data.
    std::uint8_t* const count = mask - 2;
    std::size_t pos = 2 + m_layout.fixedAreaBytes();
    for (std::size_t k = 0; k < varOrder.size(); ++k) {
        le::put16(count - 2 * (k + 1), static_cast<std::uint16_t>(pos));
        const std::size_t column = varOrder[k];
        if (isNull(row[column]))
            continue;
        present(column);
        pos += writeVariable(slots[column], row[column], plan, refs, out + pos);
    }
    le::put16(count - 2 * (varOrder.size() + 1), static_cast<std::uint16_t>(pos));
    le::put16(count, static_cast<std::uint16_t>(varOrder.size()));
}

} // namespace jet::writer
