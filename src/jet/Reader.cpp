#include "Reader.h"

#include "Catalog.h"
#include "Error.h"
#include "Header.h"
#include "RowDecoder.h"
#include "Unicode.h"
#include "UsageMap.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace jet {

namespace {

void checkPassword(const Header& header, std::u16string_view password)
{
    if (!header.password.empty() && header.password != password)
        throw Error(ErrorCode::NotAValidPassword, "Not a valid password.");
}

void visitTable(const PageSource& pages, const CatalogEntry& entry, DatabaseVisitor& visitor)
{
    const TableDefinition def = readTableDefinition(pages, entry.definitionPage);
    Table table;
    table.name = entry.name;
    table.lastAutoNumber = def.lastAutoNumber;
    table.columns.reserve(def.columns.size());
    for (const StoredColumn& c : def.columns) {
        table.columns.push_back(c.column);
        // Jet 3 text holds one byte per character; the model counts two, as Jet 4 does.
        if (pages.layout().version == Version::Jet3 && c.column.type == ColumnType::Text)
            table.columns.back().length = static_cast<std::uint16_t>(std::min(2 * c.column.length, 510));
    }
    const std::vector<std::uint32_t> owned = readUsageMap(pages, def.ownedMap);
    // The stored row count is only a hint; a damaged one must not reserve gigabytes.
    visitor.beginTable(table, std::min<std::size_t>(def.rowCount, owned.size() * 255));
    const RowDecoder decoder(pages, def);
    forEachStoredRow(pages, def.page, owned, [&](std::span<const std::uint8_t> bytes) {
        Row row = decoder.decode(bytes);
        visitor.row(row);
    });
    visitor.endTable();
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

std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw Error(ErrorCode::FileNotFound, "Could not find file '" + path.string() + "'.");
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

} // namespace

void visitDatabase(std::span<const std::uint8_t> file, std::u16string_view password, DatabaseVisitor& visitor)
{
    const Header header = decodeHeader(file);
    checkPassword(header, password);
    const PageSource pages(file, header);

    Database db;
    db.version = header.version;
    db.password = header.password;
    db.creationDate = header.creationDate;
    db.codePage = header.codePage;
    visitor.database(db);
    for (const CatalogEntry& entry : readCatalog(pages)) {
        if (entry.system)
            continue;
        try {
            visitTable(pages, entry, visitor);
        } catch (const Error& e) {
            throw Error(e.code(), std::string(e.what()) + " (table " + toUtf8(entry.name) + ")");
        }
    }
}

Database readDatabase(std::span<const std::uint8_t> file, std::u16string_view password)
{
    Collector collector;
    visitDatabase(file, password, collector);
    return std::move(collector.db);
}

Database readFile(const std::filesystem::path& path, std::u16string_view password)
{
    const std::vector<std::uint8_t> bytes = readWholeFile(path);
    return readDatabase(bytes, password);
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
