#include "RowDecoder.h"

#include "ByteOrder.h"
#include "TextCodec.h"

#include <algorithm>
#include <cstring>

namespace jet {

struct RowDecoder::RowFrame
{
    std::span<const std::uint8_t> row;
    std::size_t columnCount = 0;
    std::size_t fixedStart = 0;
    std::size_t fixedColumnsInRow = 0;
    std::span<const std::uint8_t> nullMask;
    std::vector<std::size_t> varOffsets; // V + 1 entries, the last one is the end of the variable data
    std::size_t fixedEnd = 0;            // where the variable data starts

    bool present(std::uint16_t number) const
    {
        return number < columnCount && (nullMask[number / 8] >> (number % 8)) & 1;
    }
};

namespace {

void rowDamaged(const std::string& what)
{
    PageSource::damaged(Reason::Row, "a row " + what);
}

void longValueDamaged(const std::string& what)
{
    PageSource::damaged(Reason::LongValue, "a long value " + what);
}

} // namespace

RowDecoder::RowDecoder(const PageSource& pages, const TableDefinition& definition,
                       std::vector<bool>* claimedLongValueRows)
    : m_pages(pages), m_definition(definition), m_claimed(claimedLongValueRows)
{
    m_hasVariableArea =
        definition.varColumnCount > 0 || std::any_of(definition.columns.begin(), definition.columns.end(),
                                                     [](const StoredColumn& c) { return !c.fixed(); });
}

RowDecoder::RowFrame RowDecoder::frame(std::span<const std::uint8_t> row, bool variableOffsets) const
{
    const bool jet4 = m_pages.layout().version == Version::Jet4;
    const std::size_t n = row.size();
    RowFrame f;
    f.row = row;
    if (n < (jet4 ? 2u : 1u))
        rowDamaged("is empty");
    f.columnCount = jet4 ? le::u16(row.data()) : row[0];
    f.fixedStart = jet4 ? 2 : 1;
    const std::size_t maskBytes = (f.columnCount + 7) / 8;
    if (n < f.fixedStart + maskBytes)
        rowDamaged("is shorter than its null mask");
    f.nullMask = row.subspan(n - maskBytes);
    f.fixedEnd = n - maskBytes;
    if (!m_hasVariableArea) {
        f.fixedColumnsInRow = f.columnCount;
        return f;
    }
    const std::size_t tail = n - maskBytes; // one past the variable-offset table
    if (jet4) {
        if (tail < f.fixedStart + 2)
            rowDamaged("has no room for its variable-column count");
        const std::size_t v = le::u16(&row[tail - 2]);
        if (tail < f.fixedStart + 2 + 2 * (v + 1))
            rowDamaged("has a variable-column table longer than the row");
        f.fixedColumnsInRow = f.columnCount >= v ? f.columnCount - v : 0;
        f.fixedEnd = std::min<std::size_t>(le::u16(&row[tail - 4]), f.fixedEnd);
        if (!variableOffsets)
            return f;
        f.varOffsets.reserve(v + 1);
        for (std::size_t i = 0; i <= v; ++i)
            f.varOffsets.push_back(le::u16(&row[tail - 2 - 2 * (i + 1)]));
    } else {
        if (tail < f.fixedStart + 1)
            rowDamaged("has no room for its variable-column count");
        const std::size_t v = row[tail - 1];
        std::size_t jumps = (n - 1) / 256;
        if (tail < f.fixedStart + 1 + jumps + v + 1)
            rowDamaged("has a variable-column table longer than the row");
        f.varOffsets.reserve(v + 1);
        const std::size_t eodPosition = tail - 2 - jumps - v;
        if (jumps > 0 && eodPosition / 256 < jumps)
            --jumps; // the last jump byte is a dummy
        for (std::size_t i = 0; i <= v; ++i) {
            std::size_t offset = row[tail - 2 - (n - 1) / 256 - i];
            for (std::size_t k = 0; k < jumps; ++k)
                if (row[tail - 2 - k] <= i)
                    offset += 256;
            f.varOffsets.push_back(offset);
        }
    }
    const std::size_t v = f.varOffsets.size() - 1;
    f.fixedColumnsInRow = f.columnCount >= v ? f.columnCount - v : 0;
    f.fixedEnd = std::min(f.varOffsets.front(), f.fixedEnd);
    return f;
}

Row RowDecoder::decode(std::span<const std::uint8_t> bytes) const
{
    const RowFrame f = frame(bytes);
    Row row;
    row.reserve(m_definition.columns.size());
    for (const StoredColumn& c : m_definition.columns) {
        if (c.column.type == ColumnType::Boolean)
            row.emplace_back(f.present(c.number));
        else if (c.fixed())
            row.push_back(fixedValue(c, f));
        else
            row.push_back(variableValue(c, f));
    }
    return row;
}

RowDecoder::PatchCheck::PatchCheck(const RowDecoder& decoder, std::span<const std::size_t> indexes)
    : m_decoder(decoder)
{
    for (const std::size_t index : indexes) {
        const StoredColumn& c = decoder.m_definition.columns.at(index);
        m_columns.push_back(&c);
        m_fixedSize = m_fixedSize && c.fixed();
        if (m_maskBits.size() <= c.number / 8u)
            m_maskBits.resize(c.number / 8u + 1);
        m_maskBits[c.number / 8] |= std::uint8_t(1u << (c.number % 8));
        // A Yes/No value is its null-mask bit alone.
        if (c.column.type != ColumnType::Boolean)
            m_fixedBytes.emplace_back(c.fixedOffset, c.fixedOffset + std::size_t(fixedWidth(c.column.type)));
    }
    std::sort(m_fixedBytes.begin(), m_fixedBytes.end());
}

bool RowDecoder::PatchCheck::isPatched(std::span<const std::uint8_t> previous,
                                       std::span<const std::uint8_t> row, const Row& values) const
{
    if (!m_fixedSize || previous.size() != row.size() || values.size() != m_columns.size())
        return false;
    const RowFrame f = m_decoder.frame(row, false);
    if (!m_fixedBytes.empty() && f.fixedStart + m_fixedBytes.back().second > f.fixedEnd)
        return false;
    for (std::size_t k = 0; k < m_columns.size(); ++k) {
        const StoredColumn& c = *m_columns[k];
        if ((c.column.type == ColumnType::Boolean ? Value(f.present(c.number))
                                                  : m_decoder.fixedValue(c, f)) != values[k])
            return false;
    }
    const auto same = [&](std::size_t from, std::size_t to) {
        return from >= to || std::memcmp(previous.data() + from, row.data() + from, to - from) == 0;
    };
    std::size_t from = 0;
    for (const auto& [begin, end] : m_fixedBytes) {
        if (!same(from, f.fixedStart + begin))
            return false;
        from = std::max(from, f.fixedStart + end);
    }
    const std::size_t maskStart = row.size() - f.nullMask.size();
    if (!same(from, maskStart))
        return false;
    for (std::size_t i = 0; i < f.nullMask.size(); ++i) {
        const unsigned mayDiffer = i < m_maskBits.size() ? m_maskBits[i] : 0;
        if (((previous[maskStart + i] ^ row[maskStart + i]) & ~mayDiffer) != 0)
            return false;
    }
    return true;
}

Value RowDecoder::fixedValue(const StoredColumn& c, const RowFrame& f) const
{
    if (!f.present(c.number) || std::size_t(c.fixedOrdinal) >= f.fixedColumnsInRow)
        return Null{};
    const int width = isFixedSize(c.column.type) ? fixedWidth(c.column.type) : c.column.length;
    const std::size_t start = f.fixedStart + c.fixedOffset;
    if (start + width > f.row.size() - f.nullMask.size())
        rowDamaged("has a fixed value beyond its end");
    return typedValue(c, f.row.subspan(start, width));
}

Value RowDecoder::variableValue(const StoredColumn& c, const RowFrame& f) const
{
    if (!m_hasVariableArea || c.varIndex + 1u >= f.varOffsets.size() || !f.present(c.number))
        return Null{};
    const std::size_t start = f.varOffsets[c.varIndex];
    const std::size_t end = f.varOffsets[c.varIndex + 1];
    if (start > end || end > f.row.size() - f.nullMask.size())
        rowDamaged("has a variable value with impossible bounds");
    return typedValue(c, f.row.subspan(start, end - start));
}

Value RowDecoder::typedValue(const StoredColumn& c, std::span<const std::uint8_t> b) const
{
    const Header& h = m_pages.header();
    const ColumnType type = c.column.type;
    const int width = fixedWidth(type);
    if (width > 0 && b.size() < std::size_t(width))
        rowDamaged("has a value shorter than its type");
    switch (type) {
    case ColumnType::Byte:
        return std::int32_t{b[0]};
    case ColumnType::Integer:
        return std::int32_t{static_cast<std::int16_t>(le::u16(b.data()))};
    case ColumnType::Long:
        return static_cast<std::int32_t>(le::u32(b.data()));
    case ColumnType::Currency:
        return Currency{static_cast<std::int64_t>(le::u64(b.data()))};
    case ColumnType::Single:
        return le::f32(b.data());
    case ColumnType::Double:
        return le::f64(b.data());
    case ColumnType::DateTime:
        return DateTime{le::f64(b.data())};
    case ColumnType::Guid: {
        Guid g;
        std::copy_n(b.begin(), 16, g.bytes.begin());
        return g;
    }
    case ColumnType::Text:
        return decodeStoredText(b, h.version, h.codePage);
    case ColumnType::Memo: {
        const Bytes data = longValue(b);
        return decodeStoredText(data, h.version, h.codePage);
    }
    case ColumnType::Ole:
        return longValue(b);
    default:
        return Bytes(b.begin(), b.end());
    }
}

Bytes RowDecoder::longValue(std::span<const std::uint8_t> header) const
{
    if (header.empty())
        return {};
    if (header.size() < 12)
        rowDamaged("has a long value with a short header");
    const std::size_t length = le::u32(header.data()) & 0x3FFFFFFF;
    const std::uint8_t kind = header[3] & 0xC0;
    if (kind == 0x80) {
        if (12 + length > header.size())
            rowDamaged("has an inline long value longer than the row");
        return Bytes(header.begin() + 12, header.begin() + 12 + length);
    }
    if (length > std::size_t(m_pages.pageCount()) * m_pages.layout().pageSize)
        longValueDamaged("is longer than the whole file");
    std::uint32_t pointer = le::u32(&header[4]);
    if (kind == 0x40) {
        const auto data = claim(pointer);
        if (length != data.size())
            longValueDamaged("states " + std::to_string(length) + " bytes, its row holds " +
                             std::to_string(data.size()));
        return Bytes(data.begin(), data.end());
    }
    Bytes out;
    out.reserve(length);
    while (out.size() < length) {
        if (pointer == 0)
            longValueDamaged("chain ends before its " + std::to_string(length) + " bytes");
        const auto chunk = claim(pointer);
        if (chunk.size() < 4)
            longValueDamaged("chain has a row without a pointer");
        pointer = le::u32(chunk.data());
        const std::size_t take = std::min(chunk.size() - 4, length - out.size());
        out.insert(out.end(), chunk.begin() + 4, chunk.begin() + 4 + take);
        if (out.size() == length && (pointer != 0 || take != chunk.size() - 4))
            longValueDamaged("chain goes on after its " + std::to_string(length) + " bytes");
    }
    return out;
}

std::span<const std::uint8_t> RowDecoder::claim(std::uint32_t pointer) const
{
    const auto bytes = m_pages.rowAt(pointer).bytes;
    if (m_claimed) {
        if (m_claimed->size() < std::size_t(m_pages.pageCount()) * 256)
            m_claimed->resize(std::size_t(m_pages.pageCount()) * 256);
        if ((*m_claimed)[pointer])
            PageSource::damaged(Reason::LongValueReused,
                                "a long-value row is met twice: a chain loops or two values share it");
        (*m_claimed)[pointer] = true;
    }
    return bytes;
}

} // namespace jet
