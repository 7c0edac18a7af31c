#include "TableDataWriter.h"

#include "TextEncoding.h"

#include <bit>

namespace jet::writer {

TableDataWriter::TableDataWriter(PageBuffer& file, const TableLayout& layout, std::uint32_t definitionPage)
    : m_layout(layout), m_encoder(layout), m_rows(file, definitionPage)
{
    const std::size_t longValues = layout.longValueColumns().size();
    m_longValues.reserve(longValues);
    for (std::size_t k = 0; k < longValues; ++k)
        m_longValues.emplace_back(file);
    m_refs.resize(longValues);
}

void TableDataWriter::writeRows(std::span<const RowPlan> plans)
{
    const auto& rows = m_layout.table().rows;
    for (std::size_t i = 0; i < rows.size(); ++i)
        writeRow(rows[i], plans[i]);
}

void TableDataWriter::writeRow(const Row& row, const RowPlan& plan)
{
    storeLongValues(row, plan);
    const RowPacker::Placed placed = m_rows.add(plan.size);
    m_encoder.write(row, plan, m_refs.data(), placed.bytes);
}

void TableDataWriter::storeLongValues(const Row& row, const RowPlan& plan)
{
    const auto& columns = m_layout.longValueColumns();
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const Value& value = row[columns[k]];
        if (isNull(value) || plan.isInline(RowEncoder::longValueBytes(value)))
            continue;
        m_refs[k] = m_longValues[k].store(storedBytes(value));
    }
}

std::span<const std::uint8_t> TableDataWriter::storedBytes(const Value& value)
{
    if (const auto* bytes = std::get_if<Bytes>(&value))
        return *bytes;
    const std::u16string& text = std::get<std::u16string>(value);
    if (std::endian::native == std::endian::little && storedPlain(text))
        return {reinterpret_cast<const std::uint8_t*>(text.data()), 2 * text.size()};
    m_scratch.resize(*storedTextSize(text));
    writeStoredText(text, m_scratch.data());
    return m_scratch;
}

} // namespace jet::writer
