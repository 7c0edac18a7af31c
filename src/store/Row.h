#pragma once

#include "Amount.h"
#include "WideAmount.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

namespace store {

// One row of a query: the values in select order, reachable by position or
// by column name (or alias). Integers come as qlonglong, reals as double,
// texts (and dates, as yyyy-MM-dd) as QString, blobs (a WideSum beyond 64
// bits) as QByteArray, Null as an invalid QVariant.
class Row
{
public:
    Row(std::shared_ptr<const QStringList> names, std::vector<QVariant> values);

    int size() const { return static_cast<int>(m_values.size()); }
    const QVariant& value(int column) const { return m_values.at(static_cast<std::size_t>(column)); }
    // An invalid QVariant when no column has that name (case-insensitive, as in SQL).
    QVariant value(QStringView name) const;
    const QVariant& operator[](int column) const { return value(column); }
    const QStringList& columnNames() const { return *m_names; }

    // Typed views of one value; Null gives 0, "" or an invalid date.
    qlonglong integer(int column) const { return value(column).toLongLong(); }
    QString text(int column) const { return value(column).toString(); }
    Amount amount(int column) const { return Amount::fromStored(value(column)); }
    // A WideSum, or any money value.
    WideAmount wide(int column) const { return WideAmount::fromStored(value(column)); }
    QDate date(int column) const;

private:
    std::shared_ptr<const QStringList> m_names;
    std::vector<QVariant> m_values;
};

using Rows = std::vector<Row>;

} // namespace store
