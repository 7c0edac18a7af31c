#include "ChangedRowsWriter.h"

#include "ByteOrder.h"

#include <cstring>
#include <limits>
#include <stdexcept>

namespace jet::writer {

namespace {

constexpr std::uint16_t kOffsetMask = 0x1FFF;

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
    const std::uint8_t* p = page();
    const std::size_t start = le::u16(p + kDataPageHeader + 2 * m_row) & kOffsetMask;
    const std::size_t end =
        m_row == 0 ? kPageSize : le::u16(p + kDataPageHeader + 2 * (m_row - 1)) & kOffsetMask;
    return {p + start, end - start};
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

// A page whose rows all stay and that the packer would start afresh with
// its first row comes out as it was.
bool ChangedRowsWriter::adoptsPage(std::size_t nextChange)
{
    if (m_row != 0 || nextChange < m_position + rowsOnPage() || m_packer.hasRoomFor(storedRow().size()))
        return false;
    m_packer.adoptPage(page());
    m_position += rowsOnPage();
    nextPage();
    return true;
}

void ChangedRowsWriter::write(std::span<const RowChange> changes, std::span<const RowPlan> plans)
{
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
        if (c < changes.size() && changes[c].position == m_position) {
            if (changes[c].kind == RowChange::Kind::Replace)
                encode(c);
            ++c;
            nextRow();
            continue;
        }
        if (adoptsPage(c < changes.size() ? changes[c].position : std::numeric_limits<std::size_t>::max()))
            continue;
        const std::span<const std::uint8_t> stored = storedRow();
        std::memcpy(m_packer.add(stored.size()).bytes, stored.data(), stored.size());
        nextRow();
    }
    if (c != changes.size())
        throw std::logic_error("a row change lies outside the table or out of order");
}

} // namespace jet::writer
