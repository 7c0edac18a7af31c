#pragma once

#include "Database.h"
#include "TableChanges.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace jet::writer {
class DatabaseWriter;
}

namespace jet {

// A Jet 4 file as this writer lays it out, kept in memory together with
// where each table's rows lie, so that the next file can be written from it
// by encoding only the rows that changed: rows left alone are copied as
// stored, whole pages where they still fill a page as before. Either way the
// bytes are exactly those encodeDatabase gives for the same contents, as long
// as each table's counter is at least every AutoNumber its rows hold.
class FileImage
{
public:
    // Encodes `db` whole, as encodeDatabase does (and throws as it does).
    explicit FileImage(const Database& db);
    // The previous file with `changes` (one per table, in table order)
    // applied, and the tables `added` (without rows) after its own, whose
    // changes put in every row. Throws as encodeDatabase does for a changed
    // row that cannot be stored, and std::logic_error when
    // !previous.canChangeRows().
    FileImage(const FileImage& previous, std::span<const TableChanges> changes,
              std::span<const Table> added = {});

    std::span<const std::uint8_t> bytes() const { return m_bytes; }
    std::vector<std::uint8_t> release() && { return std::move(m_bytes); }
    // The file's password, dates and tables with their columns and the
    // counters written, without rows.
    const Database& shape() const { return m_shape; }
    std::size_t rowCount(std::size_t table) const { return m_rowCounts.at(table); }
    // Whether the next file can be written from this one: no table has Memo
    // or OLE columns, whose values lie on pages of their own.
    bool canChangeRows() const;
    // A table's data pages, ascending.
    std::span<const std::uint32_t> dataPages(std::size_t table) const { return m_dataPages.at(table); }

private:
    friend class FileImageBuilder;
    FileImage(const Database& db, writer::DatabaseWriter& writer);
    void keepLayout(const writer::DatabaseWriter& writer);

    std::vector<std::uint8_t> m_bytes;
    Database m_shape;
    std::vector<std::size_t> m_rowCounts;
    std::vector<std::vector<std::uint32_t>> m_dataPages; // per table, ascending
};

// A FileImage of a database whose rows come in table after table, written
// as they come in, so that they can be let go of soon after: the very bytes
// FileImage(db) gives.
class FileImageBuilder
{
public:
    // `db` must outlive the builder: its tables are there, their rows may
    // still be coming in. The file buffer is sized for `expectedBytes`.
    FileImageBuilder(const Database& db, std::size_t expectedBytes);
    ~FileImageBuilder();
    // Writes the rows of the table being written, up to row `rows`, that are
    // not written yet; they are not read again. Throws as encodeDatabase does.
    void addRows(std::size_t rows);
    // The table's rows are all in: the next table's come next.
    void endTable();
    // Once every table has ended.
    FileImage finish();

private:
    const Database& m_db;
    std::unique_ptr<writer::DatabaseWriter> m_writer;
    std::size_t m_table = 0; // being written
};

} // namespace jet
