#pragma once

#include "PageBuffer.h"
#include "TableLayout.h"

#include <cstdint>
#include <vector>

namespace jet::writer {

// What a table definition says beyond its columns.
struct DefinitionFacts
{
    std::uint32_t rowCount = 0;
    std::int32_t lastAutoNumber = 0;
    std::uint32_t ownedMap = 0; // row pointers to usage maps
    std::uint32_t freeMap = 0;
    // Per long-value column, by ordinal: its LVAL usage map and free map.
    std::vector<std::uint32_t> longValueMaps;
    std::vector<std::uint32_t> longValueFreeMaps;
};

// Writes the definition of a table without indexes to `firstPage`; a
// definition longer than one page continues on pages appended to the file.
void writeTableDefinition(PageBuffer& file, std::uint32_t firstPage, const TableLayout& layout,
                          const DefinitionFacts& facts);
// Puts the row count and counter into a definition written before its rows were counted.
void writeDefinitionCounts(PageBuffer& file, std::uint32_t firstPage, std::uint32_t rowCount,
                           std::int32_t lastAutoNumber);

} // namespace jet::writer
