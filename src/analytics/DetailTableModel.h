#pragma once

#include "DetailTable.h"

#include <QAbstractTableModel>

namespace analytics {

// The detail list as the grid shows it, read-only: dates and texts on the
// left, money and operation numbers on the right.
class DetailTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setTable(DetailTable table);
    const DetailTable& table() const { return m_table; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    DetailTable m_table;
    QStringList m_headers;
};

} // namespace analytics
