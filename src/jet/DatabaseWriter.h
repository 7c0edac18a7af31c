#pragma once

#include "CatalogWriter.h"
#include "Database.h"
#include "PageBuffer.h"
#include "RowEncoder.h"
#include "TableChanges.h"
#include "TableDataWriter.h"
#include "TableLayout.h"
#include "UsageMapPages.h"

#include <cstdint>
#include <memory>
#include <optional>
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
    // The rows of `db` are read as each table is written: they may still be
    // coming in when the file is written a table at a time.
    explicit DatabaseWriter(const Database& db);
    // The file of `previous` with `changes` applied, one per table of
    // `shape` (the previous file's tables without rows, with their new
    // counters). Rows left alone come from the previous file as stored.
    DatabaseWriter(const Database& shape, const FileImage& previous, std::span<const TableChanges> changes);

    // The whole file; every row is checked before anything is written.
    std::vector<std::uint8_t> encode();

    // The same file written as the rows come in: begin(), then for each
    // table in order writeRows() as its rows come in and endTable() once
    // they are all in, then finish(). Only the whole-database constructor's
    // writer is written so.
    void begin(std::size_t expectedPages);
    // Checks and writes the table's rows before `rows` not written yet; they
    // are not read again.
    void writeRows(std::size_t table, std::size_t rows);
    void endTable(std::size_t table);
    std::vector<std::uint8_t> finish();

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
        Entry(const Table& table, TableKind kind);
        TableLayout layout;
        bool system = false;
        std::vector<std::size_t> autoNumberColumns;
        std::uint32_t definitionPage = 0;
        std::size_t firstMap = 0; // owned, free, then usage and free per long-value column
        std::int32_t lastAutoNumber = 0;
        std::size_t rowCount = 0;
        bool sized = false;
        std::vector<RowPlan> plans; // per row, or per change when the rows are changed ones
        std::size_t rowBytes = 0;   // rows and long values, for sizing the file
        const TableChanges* changes = nullptr;
        std::vector<std::uint32_t> dataPages;
        // While its rows are written as they come in.
        struct Streaming
        {
            TableDataWriter data;
            RowEncoder encoder;
        };
        std::unique_ptr<Streaming> streaming;
    };

    void addEntries();
    void checkTableNames() const;
    void planPages();
    static void sizeRows(Entry& entry);
    static RowPlan sizeRow(Entry& entry, const RowEncoder& encoder, std::size_t row);
    static void sizeChangedRows(Entry& entry, std::size_t previousRows);
    std::size_t expectedPages() const;
    void writeDefinition(PageBuffer& file, const UsageMapPages& maps, const Entry& entry) const;
    void writeData(PageBuffer& file, UsageMapPages& maps, Entry& entry) const;
    static void endData(PageBuffer& file, UsageMapPages& maps, Entry& entry, TableDataWriter& data);
    std::size_t firstUserEntry() const { return 1 + m_systemTables.size(); }
    const Entry& userEntry(std::size_t table) const { return m_entries.at(firstUserEntry() + table); }

    const Database& m_db;
    const FileImage* m_previous = nullptr;
    double m_date;
    Table m_catalog;
    std::vector<Table> m_systemTables;
    std::vector<Entry> m_entries; // the catalog, the other system tables, the user tables
    std::size_t m_mapCount = 0;
    std::uint32_t m_firstMapPage = 3;
    std::optional<PageBuffer> m_file; // between begin() and finish()
    std::optional<UsageMapPages> m_maps;
};

} // namespace jet::writer
