#include "ChangedRowsWriter.h"

#include "ByteOrder.h"

#include <cstring>
#include <stdexcept>

namespace jet::writer {

namespace {

constexpr std::uint16_t kOffsetMask = 0x1FFF;

// Row `r` of a data page this writer packed.
std::span<std::uint8_t> rowOf(std::uint8_t* page, std::size_t r)
{
    const std::size_t start = le::u16(page + kDataPageHeader + 2 * r) & kOffsetMask;
    const std::size_t end = r == 0 ? kPageSize : le::u16(page + kDataPageHeader + 2 * (r - 1)) & kOffsetMask;
    return {page + start, end - start};
}

} // namespace

ChangedRowsWriter::ChangedRowsWriter(RowPacker& packer, const RowEncoder& encoder,
                                     std::span<const std::uint8_t> previousFile,
                                     std::span<const std::uint32_t> previousPages)
    : m_packer(packer), m_encoder(encoder), m_previousFile(previousFile), m_previousPages(previousPages)
{}

const std::uint8_t* ChangedRowsWriter::page() const
{
    return m_previousFile.data() + std::size_t(m_previousPages[m_page]) * kPageSize;
}

std::size_t ChangedRowsWriter::rowsOnPage() const
{
    return le::u16(page() + 12);
}

std::span<const std::uint8_t> ChangedRowsWriter::storedRow() const
{
    return rowOf(const_cast<std::uint8_t*>(page()), m_row);
}

std::span<std::uint8_t> ChangedRowsWriter::copyStoredRow()
{
    const std::span<const std::uint8_t> stored = storedRow();
    const std::span<std::uint8_t> copy(m_packer.add(stored.size()).bytes, stored.size());
    std::memcpy(copy.data(), stored.data(), stored.size());
    return copy;
}

void ChangedRowsWriter::nextRow()
{
    ++m_position;
    if (++m_row == rowsOnPage())
        nextPage();
}

void ChangedRowsWriter::nextPage()
{
    m_row = 0;
    while (++m_page < m_previousPages.size() && rowsOnPage() == 0) {
    }
}

// A page whose rows all stay, or are patched, and that the packer would
// start afresh with its first row comes out as it was, but for the patches.
bool ChangedRowsWriter::adoptsPage(const TableChanges& changes, std::size_t& nextChange)
{
    if (m_row != 0 || m_packer.hasRoomFor(storedRow().size()))
        return false;
    const std::size_t end = m_position + rowsOnPage();
    std::size_t after = nextChange;
    for (; after < changes.rows.size() && changes.rows[after].position < end; ++after)
        if (changes.rows[after].kind != RowChange::Kind::Patch)
            return false;
    std::uint8_t* const copy = m_packer.adoptPage(page());
    for (; nextChange < after; ++nextChange) {
        const RowChange& patch = changes.rows[nextChange];
        m_encoder.patch(patchValues(changes, patch), changes.patchedColumns,
                        rowOf(copy, patch.position - m_position));
    }
    m_position = end;
    nextPage();
    return true;
}

void ChangedRowsWriter::write(const TableChanges& tableChanges, std::span<const RowPlan> plans)
{
    const std::span<const RowChange> changes = tableChanges.rows;
    std::size_t total = 0;
    for (m_page = 0; m_page < m_previousPages.size(); ++m_page)
        total += rowsOnPage();
    m_page = std::size_t(-1);
    nextPage();
    const auto encode = [&](std::size_t change) {
        const RowPlan plan = plans[change];
        m_encoder.write(changes[change].row, plan, nullptr, m_packer.add(plan.size).bytes);
    };
    std::size_t c = 0;
    for (;;) {
        while (c < changes.size() && changes[c].position == m_position &&
               changes[c].kind == RowChange::Kind::Insert)
            encode(c++);
        if (m_position == total)
            break;
        if (adoptsPage(tableChanges, c))
            continue;
        if (c < changes.size() && changes[c].position == m_position) {
            if (changes[c].kind == RowChange::Kind::Replace) {
                encode(c);
            } else if (changes[c].kind == RowChange::Kind::Patch) {
                m_encoder.patch(patchValues(tableChanges, changes[c]), tableChanges.patchedColumns,
                                copyStoredRow());
            }
            ++c;
            nextRow();
            continue;
        }
        copyStoredRow();
        nextRow();
    }
    if (c != changes.size())
        throw std::logic_error("a row change lies outside the table or out of order");
}

} // namespace jet::writer
