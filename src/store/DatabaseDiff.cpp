#include "DatabaseDiff.h"

#include "ChangedTableComparison.h"
#include "jet/Catalog.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"

namespace store {

bool sameColumn(const jet::Column& a, const jet::Column& b)
{
    return a.name == b.name && a.type == b.type && a.length == b.length && a.autoNumber == b.autoNumber;
}

namespace {

// Name, columns and counter.
std::string shapeDifference(const jet::Table& expected, const jet::Table& actual)
{
    const std::string name = jet::toUtf8(expected.name);
    if (expected.name != actual.name)
        return "table " + name + " comes back as " + jet::toUtf8(actual.name);
    if (expected.columns.size() != actual.columns.size())
        return "table " + name + ": number of columns";
    for (std::size_t i = 0; i < expected.columns.size(); ++i)
        if (!sameColumn(expected.columns[i], actual.columns[i]))
            return "table " + name + ": column " + jet::toUtf8(expected.columns[i].name);
    if (expected.lastAutoNumber != actual.lastAutoNumber)
        return "table " + name + ": autonumber counter";
    return {};
}

std::string rowCountDifference(const jet::Table& expected, std::size_t actualRows)
{
    return "table " + jet::toUtf8(expected.name) + ": " + std::to_string(actualRows) + " rows instead of " +
           std::to_string(expected.rows.size());
}

std::string tableDifference(const jet::Table& expected, const jet::Table& actual)
{
    if (std::string difference = shapeDifference(expected, actual); !difference.empty())
        return difference;
    if (expected.rows.size() != actual.rows.size())
        return rowCountDifference(expected, actual.rows.size());
    for (std::size_t i = 0; i < expected.rows.size(); ++i)
        if (expected.rows[i] != actual.rows[i])
            return "table " + jet::toUtf8(expected.name) + ": row " + std::to_string(i + 1);
    return {};
}

// Compares each table and row as the reader decodes it, and forgets it.
class FileComparison : public jet::DatabaseVisitor
{
public:
    explicit FileComparison(const jet::Database& expected) : m_expected(expected) {}

    void database(const jet::Database& header) override
    {
        if (header.password != m_expected.password)
            note("password");
    }
    void beginTable(const jet::Table& table, std::size_t) override
    {
        m_rows = 0;
        m_table = m_tables < m_expected.tables.size() ? &m_expected.tables[m_tables] : nullptr;
        ++m_tables;
        if (!m_table)
            return note("number of tables");
        note(shapeDifference(*m_table, table));
    }
    void row(jet::Row& row) override
    {
        if (m_table && m_rows < m_table->rows.size() && m_table->rows[m_rows] != row)
            note("table " + jet::toUtf8(m_table->name) + ": row " + std::to_string(m_rows + 1));
        ++m_rows;
    }
    void endTable() override
    {
        if (m_table && m_rows != m_table->rows.size())
            note(rowCountDifference(*m_table, m_rows));
    }

    std::string result()
    {
        if (m_tables != m_expected.tables.size())
            note("number of tables");
        return m_difference;
    }

private:
    void note(std::string difference)
    {
        if (m_difference.empty())
            m_difference = std::move(difference);
    }

    const jet::Database& m_expected;
    const jet::Table* m_table = nullptr;
    std::size_t m_tables = 0;
    std::size_t m_rows = 0;
    std::string m_difference;
};

} // namespace

std::string firstDifference(const jet::Database& expected, const jet::Database& actual)
{
    if (expected.password != actual.password)
        return "password";
    if (expected.tables.size() != actual.tables.size())
        return "number of tables";
    for (std::size_t i = 0; i < expected.tables.size(); ++i)
        if (std::string difference = tableDifference(expected.tables[i], actual.tables[i]);
            !difference.empty())
            return difference;
    return {};
}

std::string firstDifferenceInFile(const jet::Database& expected, std::span<const std::uint8_t> bytes)
{
    FileComparison comparison(expected);
    jet::visitDatabase(bytes, expected.password, comparison);
    return comparison.result();
}

std::string firstDifferenceInChangedFile(std::span<const std::uint8_t> previous,
                                         std::span<const std::uint8_t> next,
                                         std::span<const jet::TableChanges> changes,
                                         std::span<const jet::Table> added)
{
    const jet::Header previousHeader = jet::decodeHeader(previous);
    const jet::Header nextHeader = jet::decodeHeader(next);
    if (nextHeader.password != previousHeader.password || nextHeader.version != jet::Version::Jet4)
        return "password";
    const jet::PageSource previousPages(previous, previousHeader);
    const jet::PageSource nextPages(next, nextHeader);
    std::vector<jet::CatalogEntry> tables;
    for (const jet::CatalogEntry& entry : jet::readCatalog(previousPages))
        if (!entry.system)
            tables.push_back(entry);
    std::vector<jet::CatalogEntry> nextTables;
    for (const jet::CatalogEntry& entry : jet::readCatalog(nextPages))
        if (!entry.system)
            nextTables.push_back(entry);
    if (nextTables.size() != tables.size() + added.size() || nextTables.size() != changes.size())
        return "number of tables";
    for (std::size_t i = 0; i < nextTables.size(); ++i) {
        const jet::CatalogEntry* before = i < tables.size() ? &tables[i] : nullptr;
        const jet::Table* addedTable = before ? nullptr : &added[i - tables.size()];
        const std::u16string& name = before ? before->name : addedTable->name;
        if (nextTables[i].name != name)
            return "table " + jet::toUtf8(name) + " comes back as " + jet::toUtf8(nextTables[i].name);
        const std::string difference =
            ChangedTableComparison(previousPages, nextPages, nextTables[i], before, changes[i],
                                   addedTable ? std::span(addedTable->columns)
                                              : std::span<const jet::Column>())
                .difference();
        if (!difference.empty())
            return difference;
    }
    return {};
}

} // namespace store
