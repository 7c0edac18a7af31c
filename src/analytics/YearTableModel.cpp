#include "YearTableModel.h"

#include "AnalyticsTexts.h"

#include <QFont>

namespace analytics {

void YearTableModel::setTable(YearTable table)
{
    beginResetModel();
    m_table = std::move(table);
    endResetModel();
}

int YearTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_table.rows.size());
}

int YearTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kTotalColumn + 1;
}

QString YearTableModel::text(const YearTableRow& row, int column) const
{
    if (column == kAccountColumn || column == kAccountAgainColumn)
        return row.account;
    if (column == kTotalColumn)
        return row.total.toDisplayString();
    const auto& month = row.months[static_cast<std::size_t>(column - 1)];
    return month ? month->toDisplayString() : QString();
}

QVariant YearTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const bool label = index.column() == kAccountColumn || index.column() == kAccountAgainColumn;
    switch (role) {
    case Qt::DisplayRole:
        return text(m_table.rows[static_cast<std::size_t>(index.row())], index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter | (label ? Qt::AlignLeft : Qt::AlignRight));
    case Qt::FontRole:
        if (index.row() == rowCount() - 1) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    default:
        return {};
    }
}

QVariant YearTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section > kTotalColumn)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (section == kAccountColumn)
        return QString::fromUtf8(texts::accountColumn);
    if (section == kAccountAgainColumn)
        return QString::fromUtf8(texts::accountAgainColumn);
    if (section == kTotalColumn)
        return QString::fromUtf8(texts::totalColumn);
    return QString::fromUtf8(texts::monthColumns[section - 1]);
}

} // namespace analytics
