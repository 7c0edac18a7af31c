#pragma once

#include "Database.h"

#include <cstddef>
#include <cstdint>

namespace jet {

// Where the structures of a data file lie; Jet 3 and Jet 4 differ only in
// sizes and offsets.
struct Layout
{
    Version version;
    std::size_t pageSize;
    // data pages
    std::size_t dataRowCount; // offset of the row count
    std::size_t dataRowTable; // offset of the first row-offset entry
    // table definitions
    std::size_t tdefRowCount;
    std::size_t tdefAutoNumber;
    std::size_t tdefMaxCols;
    std::size_t tdefVarCols;
    std::size_t tdefColumnCount;
    std::size_t tdefIndexCount;
    std::size_t tdefRealIndexCount;
    std::size_t tdefOwnedMap;
    std::size_t tdefFixedEnd;     // first byte after the fixed part
    std::size_t realIndexEntry;   // bytes per real-index entry
    std::size_t columnDescriptor; // bytes per column descriptor
    std::size_t colType, colNum, colVarIndex, colFlags, colFixedOffset, colLength;
    bool wideColNum;   // col_num is 2 bytes (Jet 4) or 1 (Jet 3)
    bool unicodeNames; // names are UCS-2 with a 2-byte length (Jet 4) or code-page text with a 1-byte length
    std::size_t lvalChunkPointer; // bytes of the next-row pointer in a long-value chain row

    static const Layout& of(Version version);
};

inline const Layout& Layout::of(Version version)
{
    static const Layout jet4{Version::Jet4, 4096, 0x0C, 0x0E, 0x10, 0x14, 0x29, 0x2B, 0x2D, 0x2F, 0x33, 0x37,
                             0x3F,          12,   25,   0,    5,    7,    15,   21,   23,   true, true, 4};
    static const Layout jet3{Version::Jet3, 2048, 0x08, 0x0A, 0x0C, 0x10, 0x15, 0x17, 0x19, 0x1B, 0x1F,
                             0x23,          0x2B, 8,    18,   0,    1,    3,    13,   14,   16,   false,
                             false,         4};
    return version == Version::Jet4 ? jet4 : jet3;
}

} // namespace jet
