#include "FileImage.h"

#include "DatabaseWriter.h"

#include <stdexcept>

namespace jet {

namespace {

void addWithoutRows(std::vector<Table>& tables, std::span<const Table> added)
{
    for (const Table& table : added) {
        Table& t = tables.emplace_back();
        t.name = table.name;
        t.columns = table.columns;
        t.lastAutoNumber = table.lastAutoNumber;
    }
}

Database withoutRows(const Database& db)
{
    Database shape;
    shape.version = Version::Jet4;
    shape.password = db.password;
    shape.creationDate = db.creationDate;
    shape.codePage = db.codePage;
    addWithoutRows(shape.tables, db.tables);
    return shape;
}

} // namespace

FileImage::FileImage(const Database& db) : m_shape(withoutRows(db))
{
    writer::DatabaseWriter writer(db);
    m_bytes = writer.encode();
    keepLayout(writer);
}

FileImage::FileImage(const FileImage& previous, std::span<const TableChanges> changes,
                     std::span<const Table> added)
    : m_shape(withoutRows(previous.m_shape))
{
    addWithoutRows(m_shape.tables, added);
    for (std::size_t i = 0; i < m_shape.tables.size() && i < changes.size(); ++i)
        m_shape.tables[i].lastAutoNumber = changes[i].lastAutoNumber;
    writer::DatabaseWriter writer(m_shape, previous, changes);
    m_bytes = writer.encode();
    keepLayout(writer);
}

FileImage::FileImage(const Database& db, writer::DatabaseWriter& writer) : m_shape(withoutRows(db))
{
    m_bytes = writer.finish();
    keepLayout(writer);
}

void FileImage::keepLayout(const writer::DatabaseWriter& writer)
{
    for (std::size_t i = 0; i < m_shape.tables.size(); ++i) {
        m_shape.tables[i].lastAutoNumber = writer.lastAutoNumber(i);
        m_rowCounts.push_back(writer.rowCount(i));
        m_dataPages.push_back(writer.dataPages(i));
    }
}

bool FileImage::canChangeRows() const
{
    for (const Table& table : m_shape.tables)
        for (const Column& column : table.columns)
            if (column.type == ColumnType::Memo || column.type == ColumnType::Ole)
                return false;
    return true;
}

FileImageBuilder::FileImageBuilder(const Database& db, std::size_t expectedBytes)
    : m_db(db), m_writer(std::make_unique<writer::DatabaseWriter>(db))
{
    m_writer->begin(expectedBytes / writer::kPageSize + 1);
}

FileImageBuilder::~FileImageBuilder() = default;

void FileImageBuilder::addRows(std::size_t rows)
{
    m_writer->writeRows(m_table, rows);
}

void FileImageBuilder::endTable()
{
    m_writer->endTable(m_table++);
}

FileImage FileImageBuilder::finish()
{
    if (m_table != m_db.tables.size())
        throw std::logic_error("a table of the file was not added");
    return FileImage(m_db, *m_writer);
}

} // namespace jet
