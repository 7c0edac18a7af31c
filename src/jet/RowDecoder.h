#pragma once

#include "PageSource.h"
#include "Table.h"
#include "TableDefinition.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace jet {

// Turns the stored bytes of one row into values, one per column of the
// definition (in col_num order). Long values are fetched through the pages;
// their stated length must match the bytes found exactly. Every long-value
// row belongs to one value: with `claimedLongValueRows` (one bit per row
// pointer, shared by all tables of a file) a row met a second time is damage,
// which stops a chain that loops and values that share their data.
class RowDecoder
{
public:
    RowDecoder(const PageSource& pages, const TableDefinition& definition,
               std::vector<bool>* claimedLongValueRows = nullptr);

    Row decode(std::span<const std::uint8_t> row) const;
    // Tells whether a row holds the bytes of a previous one but where the
    // fixed-size columns at `indexes` hold new values (their bytes and
    // null-mask bits differ at most): then it decodes as the previous row
    // does, but for those columns, which decode to the new values.
    class PatchCheck
    {
    public:
        PatchCheck(const RowDecoder& decoder, std::span<const std::size_t> indexes);
        bool isPatched(std::span<const std::uint8_t> previous, std::span<const std::uint8_t> row,
                       const Row& values) const;

    private:
        const RowDecoder& m_decoder;
        std::vector<const StoredColumn*> m_columns;
        std::vector<std::pair<std::size_t, std::size_t>> m_fixedBytes; // from the fixed area, ascending
        std::vector<std::uint8_t> m_maskBits;                          // per null-mask byte
        bool m_fixedSize = true;
    };

private:
    struct RowFrame;
    // Without `variableOffsets`, only the first one: where the fixed area ends.
    RowFrame frame(std::span<const std::uint8_t> row, bool variableOffsets = true) const;
    Value fixedValue(const StoredColumn& c, const RowFrame& f) const;
    Value variableValue(const StoredColumn& c, const RowFrame& f) const;
    Value typedValue(const StoredColumn& c, std::span<const std::uint8_t> bytes) const;
    Bytes longValue(std::span<const std::uint8_t> header) const;
    std::span<const std::uint8_t> claim(std::uint32_t rowPointer) const;

    const PageSource& m_pages;
    const TableDefinition& m_definition;
    std::vector<bool>* m_claimed;
    bool m_hasVariableArea = false;
};

} // namespace jet
