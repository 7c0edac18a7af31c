#pragma once

#include "YearTable.h"

#include <QAbstractTableModel>

namespace analytics {

// The yearly account table as the grid shows it: "Счет", the twelve months,
// "Счета" (the label again, for the right end of a wide row) and "ИТОГО".
// Read-only; money in Russian notation, right-aligned; the totals row bold.
class YearTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int kAccountColumn = 0;
    static constexpr int kAccountAgainColumn = 13;
    static constexpr int kTotalColumn = 14;

    using QAbstractTableModel::QAbstractTableModel;

    void setTable(YearTable table);
    const YearTable& table() const { return m_table; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString text(const YearTableRow& row, int column) const;

    YearTable m_table;
};

} // namespace analytics
