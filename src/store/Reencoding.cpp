#include "Reencoding.h"

#include "jet/Error.h"

#include <algorithm>
#include <limits>

namespace store {

Reencoding::Reencoding(const jet::Database& contents, std::span<const std::uint8_t> file)
    : m_contents(contents), m_file(file)
{
    try {
        m_builder = std::make_unique<jet::FileImageBuilder>(contents, file.size());
    } catch (const jet::Error&) {
        reach(contents.tables.size(), 0); // tables this writer cannot store
    }
}

Reencoding::~Reencoding() = default;

void Reencoding::rowsIn(std::size_t table, std::size_t rows, bool whole) noexcept
{
    if (!m_builder)
        return;
    try {
        m_builder->addRows(rows);
        if (whole)
            m_builder->endTable();
        if (whole && table + 1 == m_contents.tables.size()) {
            jet::FileImage encoded = m_builder->finish();
            m_builder.reset();
            if (encoded.canChangeRows() && std::ranges::equal(encoded.bytes(), m_file)) {
                const std::lock_guard lock(m_mutex);
                m_encoded.emplace(std::move(encoded));
            }
        }
    } catch (const std::exception&) {
        // A value this writer cannot store, or no memory for a second copy
        // of the file: the first save writes the whole file.
        m_builder.reset();
        reach(m_contents.tables.size(), 0);
        return;
    }
    reach(whole ? table + 1 : table, whole ? 0 : rows);
}

void Reencoding::allIn() noexcept
{
    for (std::size_t t = 0; t < m_contents.tables.size(); ++t)
        rowsIn(t, m_contents.tables[t].rows.size(), true);
}

void Reencoding::reach(std::size_t table, std::size_t rows)
{
    const std::lock_guard lock(m_mutex);
    m_table = table;
    m_rows = rows;
}

std::size_t Reencoding::rowsDone(std::size_t table) const
{
    const std::lock_guard lock(m_mutex);
    if (m_table != table)
        return m_table > table ? std::numeric_limits<std::size_t>::max() : 0;
    return m_rows;
}

bool Reencoding::done() const
{
    const std::lock_guard lock(m_mutex);
    return m_table >= m_contents.tables.size();
}

std::optional<jet::FileImage> Reencoding::take()
{
    const std::lock_guard lock(m_mutex);
    return std::move(m_encoded);
}

} // namespace store
