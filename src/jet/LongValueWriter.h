#pragma once

#include "RowEncoder.h"
#include "RowPacker.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jet::writer {

// Stores the Memo or OLE values of one column that do not fit inside their
// rows on LVAL pages of that column: one LVAL row for up to 4076 bytes,
// otherwise a chain of rows of 4072 bytes each (the last holding exactly the
// rest), every row starting with the pointer to the next.
class LongValueWriter
{
public:
    explicit LongValueWriter(PageBuffer& file);

    LongValueRef store(std::span<const std::uint8_t> data);
    const std::vector<std::uint32_t>& pages() const { return m_packer.pages(); }

private:
    RowPacker m_packer;
};

} // namespace jet::writer
