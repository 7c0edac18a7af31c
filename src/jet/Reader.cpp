#include "Reader.h"

#include "Catalog.h"
#include "Error.h"
#include "FileTables.h"
#include "Header.h"
#include "RowDecoder.h"
#include "Unicode.h"
#include "UsageMap.h"

#include <algorithm>
#include <exception>
#include <future>
#include <optional>
#include <unordered_set>

namespace jet {

namespace {

// Tables of fewer than twice this many data pages are decoded on one thread.
constexpr std::size_t kPagesWorthAThread = 16;

// The rows a helper thread decoded from the second half of a table's pages,
// and the damage that stopped it, if any.
struct SecondHalf
{
    std::vector<Row> rows;
    std::optional<Error> damage;
    std::exception_ptr failure;
};

bool hasLongValues(const TableDefinition& def)
{
    return std::any_of(def.columns.begin(), def.columns.end(),
                       [](const StoredColumn& c) { return isLongValue(c.column.type); });
}

// Hands the rows on `owned` to the visitor in the order they lie, and returns
// their count. A long table is decoded on two threads, the second half of its
// pages beside the first; those rows go to the visitor after the first
// half's, and damage there stops the visit only after the rows before it, as
// reading on one thread would. Rows with long values stay on one thread: they
// mark the long-value rows they claim.
std::size_t visitRows(const PageSource& pages, const TableDefinition& def,
                      const std::vector<std::uint32_t>& owned, const RowDecoder& decoder,
                      DatabaseVisitor& visitor)
{
    std::size_t found = 0;
    const auto visit = [&](std::span<const std::uint8_t> bytes) {
        Row row = decoder.decode(bytes);
        visitor.row(row);
        ++found;
    };
    if (owned.size() < 2 * kPagesWorthAThread || hasLongValues(def)) {
        forEachStoredRow(pages, def.page, owned, visit);
        return found;
    }
    const auto middle = owned.begin() + static_cast<std::ptrdiff_t>(owned.size() / 2);
    const std::vector<std::uint32_t> first(owned.begin(), middle), second(middle, owned.end());
    std::future<SecondHalf> later = std::async(std::launch::async, [&] {
        SecondHalf half;
        try {
            forEachStoredRow(pages, def.page, second, [&](std::span<const std::uint8_t> bytes) {
                half.rows.push_back(decoder.decode(bytes));
            });
        } catch (const Error& e) {
            half.damage = e;
        } catch (...) {
            half.failure = std::current_exception();
        }
        return half;
    });
    forEachStoredRow(pages, def.page, first, visit); // on damage, the future waits for its thread
    SecondHalf half = later.get();
    for (Row& row : half.rows) {
        visitor.row(row);
        ++found;
    }
    if (half.failure)
        std::rethrow_exception(half.failure);
    if (half.damage)
        throw *half.damage;
    return found;
}

// Hands the table and its rows to the visitor and checks what the file states
// about them. Returns the damage found, naming the table; throws it unless
// `salvage`, which keeps the rows read before the damage.
std::optional<Error> visitTable(const PageSource& pages, const CatalogEntry& entry,
                                std::vector<bool>& claimedLongValueRows, DatabaseVisitor& visitor,
                                bool salvage)
{
    bool begun = false;
    try {
        const TableDefinition def = readTableDefinition(pages, entry.definitionPage);
        const std::vector<std::uint32_t> owned = readUsageMap(pages, def.ownedMap);
        visitor.beginTable(tableOf(pages, entry, def), rowCountHint(def, owned.size()));
        begun = true;
        const RowDecoder decoder(pages, def, &claimedLongValueRows);
        const std::size_t found = visitRows(pages, def, owned, decoder, visitor);
        checkRowCount(found, def);
        visitor.endTable();
        return std::nullopt;
    } catch (const Error& e) {
        const Error named = e.inTable(entry.name);
        if (!salvage)
            throw named;
        if (begun)
            visitor.endTable();
        return named;
    }
}

void visitFile(std::span<const std::uint8_t> file, std::u16string_view password, DatabaseVisitor& visitor,
               std::optional<Error>* damage)
{
    const Header header = decodeHeader(file);
    checkPassword(header, password);
    const PageSource pages(file, header);

    visitor.database(withoutTables(header));
    std::vector<bool> claimedLongValueRows(std::size_t(pages.pageCount()) * 256);
    std::unordered_set<std::uint32_t> definitions;
    for (const CatalogEntry& entry : readCatalog(pages)) {
        if (entry.system)
            continue;
        std::optional<Error> found;
        if (!definitions.insert(entry.definitionPage).second) {
            found = sharedDefinition().inTable(entry.name);
            if (!damage)
                throw *found;
        } else {
            found = visitTable(pages, entry, claimedLongValueRows, visitor, damage != nullptr);
        }
        if (found && damage && !*damage)
            *damage = found;
    }
}

// Keeps everything it is given: readDatabase.
class Collector : public DatabaseVisitor
{
public:
    void database(const Database& header) override { db = header; }
    void beginTable(const Table& table, std::size_t rowCountHint) override
    {
        db.tables.push_back(table);
        db.tables.back().rows.reserve(rowCountHint);
    }
    void row(Row& row) override { db.tables.back().rows.push_back(std::move(row)); }
    void endTable() override {}

    Database db;
};

} // namespace

void visitDatabase(std::span<const std::uint8_t> file, std::u16string_view password, DatabaseVisitor& visitor)
{
    visitFile(file, password, visitor, nullptr);
}

Database readDatabase(std::span<const std::uint8_t> file, std::u16string_view password)
{
    Collector collector;
    visitFile(file, password, collector, nullptr);
    return std::move(collector.db);
}

Database salvageDatabase(std::span<const std::uint8_t> file, std::u16string_view password,
                         std::optional<Error>& damage)
{
    damage.reset();
    Collector collector;
    visitFile(file, password, collector, &damage);
    return std::move(collector.db);
}

std::vector<std::u16string> tableNames(std::span<const std::uint8_t> file, std::u16string_view password)
{
    const Header header = decodeHeader(file);
    checkPassword(header, password);
    const PageSource pages(file, header);
    std::vector<std::u16string> names;
    for (const CatalogEntry& entry : readCatalog(pages))
        if (!entry.system)
            names.push_back(entry.name);
    return names;
}

} // namespace jet
