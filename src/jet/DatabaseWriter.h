#pragma once

#include "CatalogWriter.h"
#include "Database.h"
#include "PageBuffer.h"
#include "RowEncoder.h"
#include "TableChanges.h"
#include "TableLayout.h"
#include "UsageMapPages.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jet {
class FileImage;
}

namespace jet::writer {

// Lays out a whole Jet 4 file: page 0 the header, page 1 the file-wide usage
// map, page 2 the catalog's definition, then the pages of usage-map rows, the
// other table definitions, and the data, long-value, continuation and bitmap
// pages in the order they are written.
class DatabaseWriter
{
public:
    explicit DatabaseWriter(const Database& db);
    // The file of `previous` with `changes` applied, one per table of
    // `shape` (the previous file's tables without rows, with their new
    // counters). Rows left alone come from the previous file as stored.
    DatabaseWriter(const Database& shape, const FileImage& previous, std::span<const TableChanges> changes);

    std::vector<std::uint8_t> encode();

    // After encode(), per table of the database: its rows, its data pages
    // and the counter written.
    std::size_t rowCount(std::size_t table) const { return userEntry(table).rowCount; }
    const std::vector<std::uint32_t>& dataPages(std::size_t table) const
    {
        return userEntry(table).dataPages;
    }
    std::int32_t lastAutoNumber(std::size_t table) const { return userEntry(table).lastAutoNumber; }

private:
    struct Entry
    {
        Entry(const Table& table, TableKind kind) : layout(table, kind), system(kind == TableKind::System) {}
        TableLayout layout;
        bool system = false;
        std::uint32_t definitionPage = 0;
        std::size_t firstMap = 0; // owned, free, then usage and free per long-value column
        std::int32_t lastAutoNumber = 0;
        std::size_t rowCount = 0;
        std::vector<RowPlan> plans; // per row, or per change when the rows are changed ones
        std::size_t rowBytes = 0;   // rows and long values, for sizing the file
        const TableChanges* changes = nullptr;
        std::vector<std::uint32_t> dataPages;
    };

    void addEntries();
    void checkTableNames() const;
    void planPages();
    static void sizeRows(Entry& entry);
    static void sizeChangedRows(Entry& entry, std::size_t previousRows);
    std::size_t expectedPages() const;
    void writeDefinition(PageBuffer& file, const UsageMapPages& maps, const Entry& entry) const;
    void writeData(PageBuffer& file, UsageMapPages& maps, Entry& entry) const;
    const Entry& userEntry(std::size_t table) const
    {
        return m_entries.at(1 + m_systemTables.size() + table);
    }

    const Database& m_db;
    const FileImage* m_previous = nullptr;
    double m_date;
    Table m_catalog;
    std::vector<Table> m_systemTables;
    std::vector<Entry> m_entries; // the catalog, the other system tables, the user tables
    std::size_t m_mapCount = 0;
    std::uint32_t m_firstMapPage = 3;
};

} // namespace jet::writer
