#include "ColumnMapping.h"

#include "ColumnKinds.h"
#include "Schema.h"
#include "SqlSchema.h"
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

// The style of the column's first date; nullopt when it holds none.
std::optional<values::DateStyle> dateStyleOf(const jet::Table& table, std::size_t at)
{
    for (const jet::Row& row : table.rows)
        if (const auto* text = at < row.size() ? std::get_if<std::u16string>(&row[at]) : nullptr)
            if (const std::optional<values::DateStyle> style = values::styleOf(*text))
                return style;
    return std::nullopt;
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

template <typename T> std::optional<jet::Value> valueOf(const std::optional<T>& value)
{
    return value ? std::optional<jet::Value>(*value) : std::nullopt;
}

// A value the store keeps as the file's column of kind `file` gets it;
// nullopt when it does not fit there.
std::optional<jet::Value> fileValue(const jet::Column& file, values::DateStyle style, const jet::Value& value)
{
    if (const auto* amount = std::get_if<jet::Currency>(&value))
        return file.type == ColumnType::Double ? valueOf(values::doubleOfUnits(amount->units))
                                               : valueOf(values::singleOfUnits(amount->units));
    if (const auto* date = std::get_if<jet::DateTime>(&value)) {
        std::optional<std::u16string> text = values::textOfDate(*date, style);
        if (!text || static_cast<int>(text->size()) > file.maxChars())
            return std::nullopt;
        return jet::Value(std::move(*text));
    }
    return value;
}

[[noreturn]] void refuse(const jet::Table& table, const jet::Column& column, std::size_t row)
{
    throw std::range_error("row " + std::to_string(row + 1) + " of table " + jet::toUtf8(table.name) +
                           " holds a value of column " + jet::toUtf8(column.name) + " the store cannot keep");
}

} // namespace

ColumnMapping::ColumnMapping(const jet::Database& file) : m_tables(file.tables.size())
{
    const std::vector<jet::Table> ours = schemaTables();
    std::optional<values::DateStyle> fileStyle; // the first date found as text anywhere in the file
    std::vector<std::pair<std::size_t, std::size_t>> unstyled; // (table, converted column) without dates
    for (std::size_t t = 0; t < file.tables.size(); ++t) {
        const jet::Table& table = file.tables[t];
        const auto mine = std::ranges::find(ours, table.name, &jet::Table::name);
        if (mine == ours.end())
            continue;
        TableMapping& mapping = m_tables[t].emplace();
        mapping.file.name = table.name;
        mapping.file.columns = table.columns;
        mapping.file.lastAutoNumber = table.lastAutoNumber;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const jet::Column& column = table.columns[i];
            const jet::Column* wanted = columnNamed(*mine, column.name);
            if (!wanted || !kinds::accepts(kinds::meaningOf(*wanted), column))
                continue; // a file refused as it is read: what can be shown of it is shown as it is
            const Meaning meaning = kinds::meaningOf(*wanted);
            if (meaning == Meaning::Amount && column.type != ColumnType::Currency)
                mapping.columns.push_back({i, column, {}, {}});
            if (meaning == Meaning::Date && column.type == ColumnType::Text) {
                const std::optional<values::DateStyle> style = dateStyleOf(table, i);
                mapping.columns.push_back({i, column, style.value_or(values::DateStyle{}), {}});
                fileStyle = fileStyle ? fileStyle : style;
                if (!style)
                    unstyled.emplace_back(t, mapping.columns.size() - 1);
            }
            if (wanted->autoNumber && !(column.autoNumber && column.type == ColumnType::Long))
                mapping.numbered = i;
        }
        if (mapping.columns.empty() && !mapping.numbered)
            m_tables[t].reset();
    }
    for (const auto& [table, column] : unstyled)
        m_tables[table]->columns[column].style = fileStyle.value_or(values::DateStyle{});
}

void ColumnMapping::toStore(jet::Database& contents)
{
    for (std::size_t t = 0; t < m_tables.size(); ++t) {
        if (!m_tables[t])
            continue;
        TableMapping& mapping = *m_tables[t];
        jet::Table& table = contents.tables[t];
        for (Converted& c : mapping.columns) {
            for (std::size_t r = 0; r < table.rows.size(); ++r) {
                jet::Value& value = table.rows[r].at(c.at);
                std::optional<jet::Value> kept = storeValue(value);
                if (!kept)
                    refuse(table, c.file, r);
                if (fileValue(c.file, c.style, *kept) != value)
                    c.originals.emplace_back(sql::loadedRowId(r), std::move(value));
                value = std::move(*kept);
            }
            const bool date = c.file.type == ColumnType::Text;
            table.columns[c.at] =
                jet::Column::ofType(c.file.name, date ? ColumnType::DateTime : ColumnType::Currency);
        }
        if (mapping.numbered) {
            table.columns[*mapping.numbered].autoNumber = true;
            table.lastAutoNumber = 0; // the counter starts past the numbers in use
        }
    }
}

void ColumnMapping::rowToFile(const TableMapping& table, jet::Row& row, std::int64_t rowid,
                              std::size_t position) const
{
    for (const Converted& c : table.columns) {
        jet::Value& value = row.at(c.at);
        const auto original =
            std::ranges::lower_bound(c.originals, rowid, {}, &std::pair<std::int64_t, jet::Value>::first);
        if (original != c.originals.end() && original->first == rowid &&
            storeValue(original->second) == value) {
            value = original->second;
            continue;
        }
        std::optional<jet::Value> written = fileValue(c.file, c.style, value);
        if (!written)
            jet::writer::failValue(table.file, c.file, position,
                                   c.file.type == ColumnType::Text
                                       ? "the date does not fit as text"
                                       : "the amount has no binary form that reads back as it");
        value = std::move(*written);
    }
}

void ColumnMapping::toFile(std::size_t table, jet::Table& contents,
                           const std::vector<std::int64_t>& rowids) const
{
    if (table >= m_tables.size() || !m_tables[table])
        return;
    const TableMapping& mapping = *m_tables[table];
    for (std::size_t r = 0; r < contents.rows.size(); ++r)
        rowToFile(mapping, contents.rows[r], r < rowids.size() ? rowids[r] : 0, r);
    contents.columns = mapping.file.columns;
    if (mapping.numbered)
        contents.lastAutoNumber = mapping.file.lastAutoNumber;
}

void ColumnMapping::toFile(std::size_t table, jet::TableChanges& changes,
                           const std::vector<std::int64_t>& kept,
                           const std::vector<std::int64_t>& after) const
{
    if (table >= m_tables.size() || !m_tables[table])
        return;
    const TableMapping& mapping = *m_tables[table];
    std::size_t inserted = 0;
    for (jet::RowChange& change : changes.rows) {
        // Row id 0 is none: a row new to the file has no value of its own to keep.
        std::int64_t rowid = 0;
        if (changes.replacesAll)
            rowid = inserted < after.size() ? after[inserted++] : 0;
        else if (change.kind == jet::RowChange::Kind::Replace)
            rowid = kept.at(change.position);
        if (change.kind != jet::RowChange::Kind::Remove)
            rowToFile(mapping, change.row, rowid, change.position);
    }
}

bool ColumnMapping::keepsFileAsItIs() const
{
    return std::ranges::none_of(m_tables,
                                [](const std::optional<TableMapping>& table) { return table.has_value(); });
}

std::int32_t ColumnMapping::fileCounter(std::size_t table, std::int32_t counter) const
{
    const bool numbered = table < m_tables.size() && m_tables[table] && m_tables[table]->numbered;
    return numbered ? m_tables[table]->file.lastAutoNumber : counter;
}

} // namespace store
