#include "Row.h"

#include "Dates.h"

namespace store {

Row::Row(std::shared_ptr<const QStringList> names, std::vector<QVariant> values)
    : m_names(std::move(names)), m_values(std::move(values))
{}

QVariant Row::value(QStringView name) const
{
    for (qsizetype i = 0; i < m_names->size(); ++i)
        if (m_names->at(i).compare(name, Qt::CaseInsensitive) == 0)
            return m_values.at(static_cast<std::size_t>(i));
    return QVariant();
}

QDate Row::date(int column) const
{
    const QVariant& v = value(column);
    return v.isValid() ? dateFromStored(v.toString()) : QDate();
}

} // namespace store
