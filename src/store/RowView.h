#pragma once

#include "Row.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3_stmt;
struct sqlite3_value;

namespace store {

// The row a query stands on while it runs, read straight from SQLite: the
// same values and typed views as Row gives, without first making each value
// a QVariant. Valid only inside the handler it is given to. Its text() and
// date() keep what they made for the rows after: a household's names and
// dates repeat down the rows, and each is made once.
class RowView
{
public:
    explicit RowView(sqlite3_stmt* statement) : m_statement(statement) {}

    int size() const;
    QVariant value(int column) const;
    qlonglong integer(int column) const;
    QString text(int column) const;
    Amount amount(int column) const;
    QDate date(int column) const;

    // The names of the columns, as the query gives them.
    std::shared_ptr<const QStringList> columnNames() const;
    // The row kept, with those names.
    Row toRow(std::shared_ptr<const QStringList> names) const;

private:
    struct BytesHash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view bytes) const { return std::hash<std::string_view>()(bytes); }
    };

    sqlite3_value* cell(int column) const;
    static std::string_view bytesOf(sqlite3_value* value);
    QString keptText(std::string_view bytes) const;

    sqlite3_stmt* m_statement;
    mutable std::unordered_map<std::string, QString, BytesHash, std::equal_to<>> m_texts;
    mutable std::string m_lastDateText;
    mutable QDate m_lastDate;
};

// Takes one row of a query while the query runs.
using RowHandler = std::function<void(const RowView&)>;

} // namespace store
