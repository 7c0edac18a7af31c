#include "Catalog.h"

#include "RowDecoder.h"
#include "Unicode.h"
#include "UsageMap.h"

namespace jet {

namespace {

constexpr std::uint32_t kCatalogPage = 2;
constexpr std::int32_t kTableType = 1;
constexpr std::uint32_t kSystemFlags = 0x80000002;

// Only the catalog columns the reader needs are decoded, so that odd
// property blobs in other columns cannot stop the file from opening.
TableDefinition catalogColumns(const PageSource& pages)
{
    TableDefinition def = readTableDefinition(pages, kCatalogPage);
    std::vector<StoredColumn> wanted;
    for (const char16_t* name : {u"Id", u"Name", u"Type", u"Flags"}) {
        bool found = false;
        for (const StoredColumn& c : def.columns)
            if (c.column.name == name) {
                wanted.push_back(c);
                found = true;
            }
        if (!found)
            PageSource::damaged(Reason::Catalog, "the catalog has no column " + toUtf8(name));
    }
    def.columns = std::move(wanted);
    return def;
}

template <typename T> T valueOr(const Value& v, T fallback)
{
    const auto* p = std::get_if<T>(&v);
    return p ? *p : fallback;
}

CatalogEntry entryOf(const Row& row)
{
    CatalogEntry e;
    e.definitionPage = static_cast<std::uint32_t>(valueOr<std::int32_t>(row[0], 0)) & 0x00FFFFFF;
    e.name = valueOr<std::u16string>(row[1], u"");
    e.system = (static_cast<std::uint32_t>(valueOr<std::int32_t>(row[3], 0)) & kSystemFlags) != 0;
    return e;
}

} // namespace

std::vector<CatalogEntry> readCatalog(const PageSource& pages)
{
    try {
        const TableDefinition def = catalogColumns(pages);
        const RowDecoder decoder(pages, def);
        std::vector<CatalogEntry> entries;
        std::size_t rows = 0;
        forEachStoredRow(pages, kCatalogPage, readUsageMap(pages, def.ownedMap),
                         [&](std::span<const std::uint8_t> bytes) {
                             ++rows;
                             const Row row = decoder.decode(bytes);
                             if ((valueOr<std::int32_t>(row[2], 0) & 0x7F) == kTableType)
                                 entries.push_back(entryOf(row));
                         });
        if (rows != def.rowCount)
            PageSource::damaged(Reason::RowCount,
                                std::to_string(rows) + " catalog rows found of the " +
                                    std::to_string(def.rowCount) + " its definition states",
                                rows, def.rowCount);
        return entries;
    } catch (const Error& e) {
        throw e.inTable(u"MSysObjects");
    }
}

} // namespace jet
