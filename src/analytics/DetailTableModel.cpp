#include "DetailTableModel.h"

#include "AnalyticsTexts.h"

namespace analytics {

void DetailTableModel::setTable(DetailTable table)
{
    beginResetModel();
    m_table = std::move(table);
    m_headers = m_table.headers();
    endResetModel();
}

int DetailTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_table.rows.size());
}

int DetailTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant DetailTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= columnCount())
        return {};
    if (role == Qt::DisplayRole)
        return m_table.cells(m_table.rows[static_cast<std::size_t>(index.row())]).at(index.column());
    if (role == Qt::TextAlignmentRole) {
        const QString& header = m_headers.at(index.column());
        const bool number = header == QString::fromUtf8(texts::amountColumn) ||
                            header == QString::fromUtf8(texts::numberColumn);
        return QVariant::fromValue(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

QVariant DetailTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_headers.size())
        return m_headers.at(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace analytics
