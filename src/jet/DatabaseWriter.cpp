#include "DatabaseWriter.h"

#include "ChangedRowsWriter.h"
#include "FileImage.h"
#include "Header.h"
#include "RowEncoder.h"
#include "TableDataWriter.h"
#include "TdefEncoder.h"
#include "UsageMapWriter.h"
#include "WriteFailure.h"
#include "Writer.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>

namespace jet {

std::vector<std::uint8_t> encodeDatabase(const Database& db)
{
    return writer::DatabaseWriter(db).encode();
}

} // namespace jet

namespace jet::writer {

namespace {

constexpr double kDefaultCreationDate = 36526.0; // 2000-01-01, when the caller gives no date
constexpr std::uint32_t kCatalogPage = 2;

std::size_t mapsOf(const TableLayout& layout)
{
    return 2 + 2 * layout.longValueColumns().size();
}

} // namespace

DatabaseWriter::Entry::Entry(const Table& table, TableKind kind)
    : layout(table, kind), system(kind == TableKind::System)
{
    for (std::size_t c = 0; c < table.columns.size(); ++c)
        if (table.columns[c].autoNumber)
            autoNumberColumns.push_back(c);
}

DatabaseWriter::DatabaseWriter(const Database& db)
    : m_db(db), m_date(db.creationDate != 0 ? db.creationDate : kDefaultCreationDate),
      m_catalog(catalogTable()), m_systemTables(emptySystemTables())
{
    addEntries();
    for (std::size_t i = 0; i < firstUserEntry(); ++i)
        sizeRows(m_entries[i]);
}

DatabaseWriter::DatabaseWriter(const Database& shape, const FileImage& previous,
                               std::span<const TableChanges> changes)
    : m_db(shape), m_previous(&previous),
      m_date(shape.creationDate != 0 ? shape.creationDate : kDefaultCreationDate), m_catalog(catalogTable()),
      m_systemTables(emptySystemTables())
{
    const std::size_t previousTables = previous.shape().tables.size();
    if (!previous.canChangeRows() || changes.size() != shape.tables.size() ||
        shape.tables.size() < previousTables ||
        std::any_of(changes.begin() + static_cast<std::ptrdiff_t>(previousTables), changes.end(),
                    [](const TableChanges& c) { return !c.replacesAll; }))
        throw std::logic_error("the previous file cannot take these changes");
    addEntries();
    for (Entry& e : m_entries) {
        if (e.system) {
            sizeRows(e);
            continue;
        }
        const std::size_t table = static_cast<std::size_t>(&e - &userEntry(0));
        e.changes = &changes[table];
        sizeChangedRows(e, e.changes->replacesAll ? 0 : previous.rowCount(table));
    }
}

void DatabaseWriter::addEntries()
{
    checkTableNames();
    m_entries.reserve(1 + m_systemTables.size() + m_db.tables.size());
    m_entries.emplace_back(m_catalog, TableKind::System);
    for (const Table& t : m_systemTables)
        m_entries.emplace_back(t, TableKind::System);
    for (const Table& t : m_db.tables)
        m_entries.emplace_back(t, TableKind::User);
    planPages();
}

void DatabaseWriter::checkTableNames() const
{
    for (std::size_t i = 0; i < m_db.tables.size(); ++i) {
        const Table& t = m_db.tables[i];
        const bool system = sameName(t.name, m_catalog.name) ||
                            std::any_of(m_systemTables.begin(), m_systemTables.end(),
                                        [&](const Table& s) { return sameName(s.name, t.name); });
        if (system)
            failTable(t, "the name belongs to a system table");
        for (std::size_t j = 0; j < i; ++j)
            if (sameName(m_db.tables[j].name, t.name))
                failTable(t, "the database has two tables of this name");
    }
}

void DatabaseWriter::planPages()
{
    for (Entry& e : m_entries) {
        e.firstMap = m_mapCount;
        m_mapCount += mapsOf(e.layout);
    }
    std::uint32_t next = m_firstMapPage + static_cast<std::uint32_t>(UsageMapPages::pagesFor(m_mapCount));
    std::vector<ListedTable> listed;
    for (Entry& e : m_entries) {
        e.definitionPage = &e == &m_entries.front() ? kCatalogPage : next++;
        listed.push_back({&e.layout.table(), e.definitionPage, e.system});
    }
    fillCatalog(m_catalog, listed, m_date);
}

// Checks every row before anything is written, finds the last AutoNumber and
// sizes the data so that the file buffer is allocated once.
void DatabaseWriter::sizeRows(Entry& entry)
{
    const Table& table = entry.layout.table();
    const RowEncoder encoder(entry.layout);
    entry.sized = true;
    entry.lastAutoNumber = table.lastAutoNumber;
    entry.rowCount = 0;
    entry.plans.resize(table.rows.size());
    for (std::size_t r = 0; r < table.rows.size(); ++r)
        entry.plans[r] = sizeRow(entry, encoder, r);
}

// Checks the row, counts it and its bytes and follows the counter.
RowPlan DatabaseWriter::sizeRow(Entry& entry, const RowEncoder& encoder, std::size_t r)
{
    const Table& table = entry.layout.table();
    const Row& row = table.rows[r];
    const RowPlan plan = encoder.plan(row, r);
    ++entry.rowCount;
    entry.rowBytes += plan.size + 2;
    for (const std::uint16_t c : entry.layout.longValueColumns()) {
        const std::size_t bytes = RowEncoder::longValueBytes(row[c]);
        entry.rowBytes += plan.isInline(bytes) ? 0 : bytes;
    }
    for (const std::size_t c : entry.autoNumberColumns)
        if (const auto* n = std::get_if<std::int32_t>(&row[c]))
            entry.lastAutoNumber = std::max(entry.lastAutoNumber, *n);
    return plan;
}

// The same for the changed rows only: the others were checked when they
// were written, and each counter is at least their AutoNumbers.
void DatabaseWriter::sizeChangedRows(Entry& entry, std::size_t previousRows)
{
    const RowEncoder encoder(entry.layout);
    const Table& table = entry.layout.table();
    const std::optional<std::size_t> autoColumn = [&]() -> std::optional<std::size_t> {
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            if (table.columns[i].autoNumber)
                return i;
        return std::nullopt;
    }();
    entry.sized = true;
    entry.lastAutoNumber = entry.changes->lastAutoNumber;
    entry.rowCount = previousRows;
    entry.plans.resize(entry.changes->rows.size());
    for (std::size_t i = 0; i < entry.changes->rows.size(); ++i) {
        const RowChange& change = entry.changes->rows[i];
        if (change.kind == RowChange::Kind::Remove) {
            --entry.rowCount;
            continue;
        }
        // The place the row takes in the new file, for messages.
        const std::size_t index = change.position + entry.rowCount - previousRows;
        if (change.kind == RowChange::Kind::Insert)
            ++entry.rowCount;
        if (change.kind == RowChange::Kind::Patch) {
            encoder.checkPatch(patchValues(*entry.changes, change), entry.changes->patchedColumns, index);
        } else {
            entry.plans[i] = encoder.plan(change.row, index);
            entry.rowBytes += entry.plans[i].size + 2;
        }
        if (autoColumn)
            if (const Value* value = newValue(*entry.changes, change, *autoColumn))
                if (const auto* n = std::get_if<std::int32_t>(value))
                    entry.lastAutoNumber = std::max(entry.lastAutoNumber, *n);
    }
}

std::size_t DatabaseWriter::expectedPages() const
{
    std::size_t pages = m_firstMapPage + UsageMapPages::pagesFor(m_mapCount) + m_entries.size() + 4;
    if (m_previous)
        pages += m_previous->bytes().size() / kPageSize;
    for (const Entry& e : m_entries) {
        const std::size_t rows = e.layout.table().rows.size();
        pages +=
            std::max(e.rowBytes / 3600, rows / kMaxRowsPerPage) + 1 + 2 * e.layout.longValueColumns().size();
    }
    return pages;
}

std::vector<std::uint8_t> DatabaseWriter::encode()
{
    for (Entry& e : m_entries)
        if (!e.sized)
            sizeRows(e);
    begin(expectedPages());
    for (std::size_t i = firstUserEntry(); i < m_entries.size(); ++i) {
        writeData(*m_file, *m_maps, m_entries[i]);
        std::vector<RowPlan>().swap(m_entries[i].plans);
    }
    return finish();
}

// The definitions come first, as the engine lays them out; the user tables'
// row counts and counters are put in by finish(), once their rows are written.
void DatabaseWriter::begin(std::size_t expectedPages)
{
    PageBuffer& file = m_file.emplace(expectedPages);
    const std::uint32_t fixedPages = m_entries.back().definitionPage + 1;
    while (file.pageCount() < fixedPages)
        file.append();
    UsageMapPages& maps = m_maps.emplace(file, m_firstMapPage, m_mapCount);
    for (const Entry& e : m_entries)
        writeDefinition(file, maps, e);
    for (std::size_t i = 0; i < firstUserEntry(); ++i)
        writeData(file, maps, m_entries[i]);
}

void DatabaseWriter::writeRows(std::size_t table, std::size_t rows)
{
    Entry& e = m_entries.at(firstUserEntry() + table);
    if (!e.streaming) {
        e.streaming.reset(
            new Entry::Streaming{TableDataWriter(*m_file, e.layout, e.definitionPage), RowEncoder(e.layout)});
        e.sized = true;
        e.lastAutoNumber = e.layout.table().lastAutoNumber;
    }
    for (std::size_t r = e.rowCount; r < rows; ++r)
        e.streaming->data.writeRow(e.layout.table().rows[r], sizeRow(e, e.streaming->encoder, r));
}

void DatabaseWriter::endTable(std::size_t table)
{
    writeRows(table, 0);
    Entry& e = m_entries.at(firstUserEntry() + table);
    endData(*m_file, *m_maps, e, e.streaming->data);
    e.streaming.reset();
}

std::vector<std::uint8_t> DatabaseWriter::finish()
{
    PageBuffer& file = *m_file;
    for (const Entry& e : m_entries)
        writeDefinitionCounts(file, e.definitionPage, static_cast<std::uint32_t>(e.rowCount),
                              e.lastAutoNumber);
    writeGlobalMap(file);
    const std::vector<std::uint8_t> header = encodeJet4Header(m_db.password, m_date);
    std::memcpy(file.page(0), header.data(), kPageSize);
    m_maps.reset();
    std::vector<std::uint8_t> bytes = file.release();
    m_file.reset();
    return bytes;
}

void DatabaseWriter::writeDefinition(PageBuffer& file, const UsageMapPages& maps, const Entry& e) const
{
    DefinitionFacts facts;
    facts.rowCount = static_cast<std::uint32_t>(e.rowCount);
    facts.lastAutoNumber = e.lastAutoNumber;
    facts.ownedMap = maps.pointer(e.firstMap);
    facts.freeMap = maps.pointer(e.firstMap + 1);
    for (std::size_t k = 0; k < e.layout.longValueColumns().size(); ++k) {
        facts.longValueMaps.push_back(maps.pointer(e.firstMap + 2 + 2 * k));
        facts.longValueFreeMaps.push_back(maps.pointer(e.firstMap + 3 + 2 * k));
    }
    writeTableDefinition(file, e.definitionPage, e.layout, facts);
}

void DatabaseWriter::writeData(PageBuffer& file, UsageMapPages& maps, Entry& e) const
{
    TableDataWriter data(file, e.layout, e.definitionPage);
    if (e.changes) {
        const std::size_t table = static_cast<std::size_t>(&e - &userEntry(0));
        const auto previousPages =
            e.changes->replacesAll ? std::span<const std::uint32_t>() : m_previous->dataPages(table);
        ChangedRowsWriter(data.rows(), RowEncoder(e.layout), m_previous->bytes(), previousPages)
            .write(*e.changes, e.plans);
    } else {
        data.writeRows(e.plans);
    }
    endData(file, maps, e, data);
}

// The table's usage maps, once its rows are written.
void DatabaseWriter::endData(PageBuffer& file, UsageMapPages& maps, Entry& e, TableDataWriter& data)
{
    const auto& pages = data.dataPages();
    e.dataPages = pages;
    maps.put(e.firstMap, encodeUsageMap(pages, file));
    // Only the last page can have room, as pages are filled in order.
    const std::span<const std::uint32_t> withRoom =
        data.lastPageHasRoom() ? std::span(pages).last(1) : std::span<const std::uint32_t>();
    maps.put(e.firstMap + 1, encodeUsageMap(withRoom, file));
    for (std::size_t k = 0; k < e.layout.longValueColumns().size(); ++k) {
        // The engine lists a column's LVAL pages in both of its maps.
        const auto& lval = data.longValuePages(k);
        maps.put(e.firstMap + 2 + 2 * k, encodeUsageMap(lval, file));
        maps.put(e.firstMap + 3 + 2 * k, encodeUsageMap(lval, file));
    }
}

} // namespace jet::writer
