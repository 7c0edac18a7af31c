#pragma once

#include "CatalogWriter.h"
#include "Database.h"
#include "PageBuffer.h"
#include "RowEncoder.h"
#include "TableLayout.h"
#include "UsageMapPages.h"

#include <cstdint>
#include <vector>

namespace jet::writer {

// Lays out a whole Jet 4 file: page 0 the header, page 1 the file-wide usage
// map, page 2 the catalog's definition, then the pages of usage-map rows, the
// other table definitions, and the data, long-value, continuation and bitmap
// pages in the order they are written.
class DatabaseWriter
{
public:
    explicit DatabaseWriter(const Database& db);

    std::vector<std::uint8_t> encode();

private:
    struct Entry
    {
        Entry(const Table& table, TableKind kind) : layout(table, kind), system(kind == TableKind::System) {}
        TableLayout layout;
        bool system = false;
        std::uint32_t definitionPage = 0;
        std::size_t firstMap = 0; // owned, free, then usage and free per long-value column
        std::int32_t lastAutoNumber = 0;
        std::vector<RowPlan> plans;
        std::size_t rowBytes = 0; // rows and long values, for sizing the file
    };

    void checkTableNames() const;
    void planPages();
    static void sizeRows(Entry& entry);
    std::size_t expectedPages() const;
    void writeDefinition(PageBuffer& file, const UsageMapPages& maps, const Entry& entry) const;
    void writeData(PageBuffer& file, UsageMapPages& maps, const Entry& entry) const;

    const Database& m_db;
    double m_date;
    Table m_catalog;
    std::vector<Table> m_systemTables;
    std::vector<Entry> m_entries; // the catalog, the other system tables, the user tables
    std::size_t m_mapCount = 0;
    std::uint32_t m_firstMapPage = 3;
};

} // namespace jet::writer
