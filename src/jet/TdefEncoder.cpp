#include "TdefEncoder.h"

#include "ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace jet::writer {

namespace {

constexpr std::uint32_t kConstant1625 = 1625;
constexpr std::size_t kFixedPart = 0x3F;
constexpr std::size_t kDescriptor = 25;
constexpr std::size_t kPageHeader = 8; // type, flag, free space, next page
constexpr std::uint8_t kUserTable = 0x4E;
constexpr std::uint8_t kSystemTable = 0x53;

std::size_t definitionSize(const TableLayout& layout)
{
    std::size_t size = kFixedPart + 2; // and the closing FF FF
    for (const Column& c : layout.table().columns)
        size += kDescriptor + 2 + 2 * c.name.size();
    return size + 10 * layout.longValueColumns().size();
}

void putDescriptor(std::uint8_t* d, const TableLayout& layout, std::size_t column)
{
    const ColumnSlot& s = layout.slots()[column];
    const Column& c = layout.table().columns[column];
    const bool system = layout.kind() == TableKind::System;
    d[0] = static_cast<std::uint8_t>(c.type);
    le::put32(d + 1, kConstant1625);
    le::put16(d + 5, static_cast<std::uint16_t>(column));
    le::put16(d + 7, s.varIndex);
    le::put16(d + 9, static_cast<std::uint16_t>(system ? 0 : column));
    if (c.type == ColumnType::Numeric) {
        d[11] = 18; // precision and scale of a default Decimal column
        d[12] = 0;
    } else {
        le::put16(d + 11, 0x0409); // general sort order, version 0
    }
    d[15] = s.flags;
    const bool text = c.type == ColumnType::Text || c.type == ColumnType::Memo;
    d[16] = text && !system ? 0x01 : 0x00; // compressed text allowed
    le::put16(d + 21, s.fixed ? s.fixedOffset : 0);
    le::put16(d + 23, c.length);
}

void putCounts(std::uint8_t* definition, std::uint32_t rowCount, std::int32_t lastAutoNumber)
{
    le::put32(definition + 0x10, rowCount);
    le::put32(definition + 0x14, static_cast<std::uint32_t>(lastAutoNumber));
}

std::vector<std::uint8_t> encodeDefinition(const TableLayout& layout, const DefinitionFacts& facts)
{
    const auto& columns = layout.table().columns;
    std::vector<std::uint8_t> def(definitionSize(layout), 0);
    std::uint8_t* p = def.data();
    p[0] = 0x02;
    p[1] = 0x01;
    le::put32(p + 0x08, static_cast<std::uint32_t>(def.size()));
    le::put32(p + 0x0C, kConstant1625);
    putCounts(p, facts.rowCount, facts.lastAutoNumber);
    p[0x18] = 0x01;
    p[0x28] = layout.kind() == TableKind::User ? kUserTable : kSystemTable;
    le::put16(p + 0x29, static_cast<std::uint16_t>(columns.size()));
    le::put16(p + 0x2B, static_cast<std::uint16_t>(layout.varOrder().size()));
    le::put16(p + 0x2D, static_cast<std::uint16_t>(columns.size()));
    le::put32(p + 0x37, facts.ownedMap);
    le::put32(p + 0x3B, facts.freeMap);
    std::uint8_t* at = p + kFixedPart;
    for (std::size_t i = 0; i < columns.size(); ++i, at += kDescriptor)
        putDescriptor(at, layout, i);
    for (const Column& c : columns) {
        le::put16(at, static_cast<std::uint16_t>(2 * c.name.size()));
        at += 2;
        for (const char16_t ch : c.name) {
            le::put16(at, ch);
            at += 2;
        }
    }
    const auto& longValues = layout.longValueColumns();
    for (std::size_t k = 0; k < longValues.size(); ++k, at += 10) {
        le::put16(at, longValues[k]);
        le::put32(at + 2, facts.longValueMaps[k]);
        le::put32(at + 6, facts.longValueFreeMaps[k]);
    }
    le::put16(at, 0xFFFF);
    return def;
}

// Free space in a definition page header: what is left after its bytes,
// less the 8 the engine keeps back.
std::uint16_t definitionFreeSpace(std::size_t bytesOnPage)
{
    return static_cast<std::uint16_t>(
        bytesOnPage + kPageHeader >= kPageSize ? 0 : kPageSize - bytesOnPage - kPageHeader);
}

} // namespace

void writeTableDefinition(PageBuffer& file, std::uint32_t firstPage, const TableLayout& layout,
                          const DefinitionFacts& facts)
{
    const std::vector<std::uint8_t> def = encodeDefinition(layout, facts);
    std::size_t done = std::min(def.size(), kPageSize);
    std::memcpy(file.page(firstPage), def.data(), done);
    le::put16(file.page(firstPage) + 2, definitionFreeSpace(done));
    std::uint32_t previous = firstPage;
    while (done < def.size()) {
        const std::size_t chunk = std::min(def.size() - done, kPageSize - kPageHeader);
        const std::uint32_t number = file.append();
        le::put32(file.page(previous) + 4, number);
        std::uint8_t* p = file.page(number);
        p[0] = 0x02;
        p[1] = 0x01;
        le::put16(p + 2, definitionFreeSpace(kPageHeader + chunk));
        std::memcpy(p + kPageHeader, def.data() + done, chunk);
        done += chunk;
        previous = number;
    }
}

void writeDefinitionCounts(PageBuffer& file, std::uint32_t firstPage, std::uint32_t rowCount,
                           std::int32_t lastAutoNumber)
{
    putCounts(file.page(firstPage), rowCount, lastAutoNumber);
}

} // namespace jet::writer
