#include "RowDifference.h"

#include "Catalog.h"
#include "Error.h"
#include "Header.h"
#include "RowDecoder.h"
#include "UsageMap.h"

#include <algorithm>

namespace jet {

namespace {

using Bytes = std::span<const std::uint8_t>;

// How far apart, in rows of both files together, the two files may get
// before they are found in step again; past it the rest of a table differs.
constexpr std::size_t kResyncWindow = 64;

struct StoredTable
{
    std::u16string name;
    TableDefinition definition;
    std::vector<Bytes> rows; // as stored, in the order the reader reads them
};

std::vector<StoredTable> storedTables(const PageSource& pages)
{
    std::vector<StoredTable> tables;
    for (const CatalogEntry& entry : readCatalog(pages)) {
        if (entry.system)
            continue;
        StoredTable& table = tables.emplace_back();
        table.name = entry.name;
        table.definition = readTableDefinition(pages, entry.definitionPage);
        forEachStoredRow(pages, table.definition.page, readUsageMap(pages, table.definition.ownedMap),
                         [&](Bytes row) { table.rows.push_back(row); });
    }
    return tables;
}

bool same(Bytes a, Bytes b)
{
    return std::ranges::equal(a, b);
}

// The rows `from` holds from `at` on and `to` from `toAt` on, which are
// different, as replacements, removals and inserts: a row of `from` is
// replaced by one of `to` in turn, the rest removed or put in before the
// row at `end`.
class ChangeList
{
public:
    ChangeList(const RowDecoder& decoder, TableChanges& changes) : m_decoder(decoder), m_changes(changes) {}

    void gap(std::size_t at, std::size_t end, std::span<const Bytes> inserted)
    {
        const std::size_t replaced = std::min(end - at, inserted.size());
        for (std::size_t i = 0; i < replaced; ++i)
            m_changes.rows.push_back({at + i, RowChange::Kind::Replace, m_decoder.decode(inserted[i])});
        for (std::size_t i = at + replaced; i < end; ++i)
            m_changes.rows.push_back({i, RowChange::Kind::Remove, {}});
        for (std::size_t i = replaced; i < inserted.size(); ++i)
            m_changes.rows.push_back({end, RowChange::Kind::Insert, m_decoder.decode(inserted[i])});
    }

private:
    const RowDecoder& m_decoder;
    TableChanges& m_changes;
};

// Walks both row lists together; where they part, the nearest pair of equal
// rows ahead (fewest rows skipped in both together) puts them in step again.
TableChanges tableChanges(const StoredTable& from, const StoredTable& to, const RowDecoder& decoder)
{
    TableChanges changes;
    changes.lastAutoNumber = to.definition.lastAutoNumber;
    ChangeList list(decoder, changes);
    const std::vector<Bytes>& a = from.rows;
    const std::vector<Bytes>& b = to.rows;
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (same(a[i], b[j])) {
            ++i, ++j;
            continue;
        }
        bool found = false;
        for (std::size_t skipped = 1; skipped <= kResyncWindow && !found; ++skipped)
            for (std::size_t x = 0; x <= skipped && !found; ++x) {
                const std::size_t y = skipped - x;
                if (i + x < a.size() && j + y < b.size() && same(a[i + x], b[j + y])) {
                    list.gap(i, i + x, std::span(b).subspan(j, y));
                    i += x, j += y;
                    found = true;
                }
            }
        if (!found)
            break;
    }
    list.gap(i, a.size(), std::span(b).subspan(j));
    return changes;
}

} // namespace

std::optional<std::vector<TableChanges>> rowChangesBetween(const FileImage& from,
                                                           std::span<const std::uint8_t> to)
{
    try {
        const PageSource fromPages(from.bytes(), decodeHeader(from.bytes()));
        const PageSource toPages(to, decodeHeader(to));
        const std::vector<StoredTable> before = storedTables(fromPages);
        const std::vector<StoredTable> after = storedTables(toPages);
        const std::vector<Table>& shape = from.shape().tables;
        if (before.size() != shape.size() || after.size() != shape.size())
            return std::nullopt;
        std::vector<TableChanges> changes;
        for (std::size_t t = 0; t < shape.size(); ++t) {
            const TableDefinition& definition = after[t].definition;
            if (after[t].name != shape[t].name || definition.columns.size() != shape[t].columns.size() ||
                std::ranges::any_of(definition.columns,
                                    [](const StoredColumn& c) { return isLongValue(c.column.type); }))
                return std::nullopt;
            changes.push_back(tableChanges(before[t], after[t], RowDecoder(toPages, definition)));
        }
        return changes;
    } catch (const Error&) {
        return std::nullopt;
    }
}

} // namespace jet
