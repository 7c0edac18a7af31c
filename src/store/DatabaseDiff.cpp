#include "DatabaseDiff.h"

#include "jet/Unicode.h"

namespace store {

namespace {

bool sameColumn(const jet::Column& a, const jet::Column& b)
{
    return a.name == b.name && a.type == b.type && a.length == b.length && a.autoNumber == b.autoNumber;
}

std::string tableDifference(const jet::Table& expected, const jet::Table& actual)
{
    const std::string name = jet::toUtf8(expected.name);
    if (expected.name != actual.name)
        return "table " + name + " comes back as " + jet::toUtf8(actual.name);
    if (expected.columns.size() != actual.columns.size())
        return "table " + name + ": number of columns";
    for (std::size_t i = 0; i < expected.columns.size(); ++i)
        if (!sameColumn(expected.columns[i], actual.columns[i]))
            return "table " + name + ": column " + jet::toUtf8(expected.columns[i].name);
    if (expected.rows.size() != actual.rows.size())
        return "table " + name + ": " + std::to_string(actual.rows.size()) + " rows instead of " +
               std::to_string(expected.rows.size());
    for (std::size_t i = 0; i < expected.rows.size(); ++i)
        if (expected.rows[i] != actual.rows[i])
            return "table " + name + ": row " + std::to_string(i + 1);
    if (expected.lastAutoNumber != actual.lastAutoNumber)
        return "table " + name + ": autonumber counter";
    return {};
}

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

} // namespace store
