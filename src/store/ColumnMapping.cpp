#include "ColumnMapping.h"

#include "ColumnKinds.h"
#include "Schema.h"
#include "jet/Unicode.h"
#include "jet/WriteFailure.h"

#include <algorithm>
#include <stdexcept>

namespace store {

using jet::ColumnType;
using kinds::Meaning;

namespace {

const jet::Column* columnNamed(const jet::Table& table, const std::u16string& name)
{
    for (const jet::Column& column : table.columns)
        if (column.name == name)
            return &column;
    return nullptr;
}

bool isBlank(const std::u16string& text)
{
    return text.find_first_not_of(u' ') == std::u16string::npos;
}

// The style of the column's first date, or "dd.mm.yyyy" when it holds none.
values::DateStyle dateStyleOf(const jet::Table& table, std::size_t at)
{
    for (const jet::Row& row : table.rows)
        if (const auto* text = std::get_if<std::u16string>(&row[at]))
            if (const std::optional<values::DateStyle> style = values::styleOf(*text))
                return *style;
    return {};
}

[[noreturn]] void refuse(const jet::Table& table, const jet::Column& column, std::size_t row)
{
    throw std::range_error("row " + std::to_string(row + 1) + " of table " + jet::toUtf8(table.name) +
                           " holds a value of column " + jet::toUtf8(column.name) + " the store cannot keep");
}

std::optional<jet::Value> currency(std::optional<std::int64_t> units)
{
    return units ? std::optional<jet::Value>(jet::Currency{*units}) : std::nullopt;
}

// A value of a converted column as the store keeps it; nullopt when it cannot.
std::optional<jet::Value> storeValue(const jet::Value& value)
{
    if (const auto* amount = std::get_if<double>(&value))
        return currency(values::unitsOfDouble(*amount));
    if (const auto* single = std::get_if<float>(&value))
        return currency(values::unitsOfSingle(*single));
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        if (isBlank(*text))
            return jet::Value(jet::Null{});
        if (const std::optional<jet::DateTime> date = values::dateOfText(*text))
            return jet::Value(*date);
        return std::nullopt;
    }
    return value;
}

} // namespace

ColumnMapping::ColumnMapping(const jet::Database& file) : m_tables(file.tables.size())
{
    const std::vector<jet::Table> ours = schemaTables();
    for (std::size_t t = 0; t < file.tables.size(); ++t) {
        const jet::Table& table = file.tables[t];
        const auto mine = std::ranges::find(ours, table.name, &jet::Table::name);
        if (mine == ours.end())
            continue;
        TableMapping mapping;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const jet::Column& column = table.columns[i];
            const jet::Column* wanted = columnNamed(*mine, column.name);
            if (!wanted || !kinds::accepts(kinds::meaningOf(*wanted), column))
                continue; // a file refused as it is read; what can be shown of it is shown as it is
            const Meaning meaning = kinds::meaningOf(*wanted);
            if (meaning == Meaning::Amount && column.type != ColumnType::Currency)
                mapping.columns.push_back({i, column, {}});
            else if (meaning == Meaning::Date && column.type == ColumnType::Text)
                mapping.columns.push_back({i, column, dateStyleOf(table, i)});
            if (wanted->autoNumber && !(column.autoNumber && column.type == ColumnType::Long))
                mapping.numbered = i;
        }
        if (mapping.columns.empty() && !mapping.numbered)
            continue;
        mapping.file.name = table.name;
        mapping.file.columns = table.columns;
        mapping.file.lastAutoNumber = table.lastAutoNumber;
        m_tables[t] = std::move(mapping);
    }
}

void ColumnMapping::toStore(jet::Database& contents) const
{
    for (std::size_t t = 0; t < m_tables.size(); ++t) {
        if (!m_tables[t])
            continue;
        const TableMapping& mapping = *m_tables[t];
        jet::Table& table = contents.tables[t];
        for (const Converted& c : mapping.columns)
            table.columns[c.at] = jet::Column::ofType(
                c.file.name, c.file.type == ColumnType::Text ? ColumnType::DateTime : ColumnType::Currency);
        if (mapping.numbered) {
            table.columns[*mapping.numbered].autoNumber = true;
            table.lastAutoNumber = 0; // the counter starts past the numbers in use
        }
        for (std::size_t r = 0; r < table.rows.size(); ++r)
            for (const Converted& c : mapping.columns) {
                jet::Value& value = table.rows[r].at(c.at);
                std::optional<jet::Value> kept = storeValue(value);
                if (!kept)
                    refuse(table, c.file, r);
                value = std::move(*kept);
            }
    }
}

void ColumnMapping::rowToFile(const TableMapping& table, jet::Row& row, std::size_t position) const
{
    for (const Converted& c : table.columns) {
        jet::Value& value = row.at(c.at);
        if (const auto* amount = std::get_if<jet::Currency>(&value)) {
            if (c.file.type == ColumnType::Double) {
                const std::optional<double> binary = values::doubleOfUnits(amount->units);
                if (!binary)
                    jet::writer::failValue(table.file, c.file, position, "the amount has no Double form");
                value = *binary;
            } else {
                const std::optional<float> binary = values::singleOfUnits(amount->units);
                if (!binary)
                    jet::writer::failValue(table.file, c.file, position, "the amount has no Single form");
                value = *binary;
            }
        } else if (const auto* date = std::get_if<jet::DateTime>(&value)) {
            std::optional<std::u16string> text = values::textOfDate(*date, c.style);
            if (!text || static_cast<int>(text->size()) > c.file.maxChars())
                jet::writer::failValue(table.file, c.file, position, "the date does not fit as text");
            value = std::move(*text);
        }
    }
}

void ColumnMapping::toFile(std::size_t table, jet::Table& contents) const
{
    if (table >= m_tables.size() || !m_tables[table])
        return;
    const TableMapping& mapping = *m_tables[table];
    for (std::size_t r = 0; r < contents.rows.size(); ++r)
        rowToFile(mapping, contents.rows[r], r);
    contents.columns = mapping.file.columns;
    if (mapping.numbered)
        contents.lastAutoNumber = mapping.file.lastAutoNumber;
}

void ColumnMapping::toFile(std::size_t table, jet::TableChanges& changes) const
{
    if (table >= m_tables.size() || !m_tables[table])
        return;
    const TableMapping& mapping = *m_tables[table];
    for (jet::RowChange& change : changes.rows)
        if (change.kind != jet::RowChange::Kind::Remove)
            rowToFile(mapping, change.row, change.position);
    if (mapping.numbered)
        changes.lastAutoNumber = mapping.file.lastAutoNumber;
}

} // namespace store
