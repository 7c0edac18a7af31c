#pragma once

#include "Selection.h"

#include <QAbstractTableModel>

namespace operations {

// The operations a filter lets through, one row each, read-only; sortable by
// any column. Rows are drawn from the journal on demand, so a million
// operations cost no more than their list of positions.
class OperationTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Date,
        Kind,
        Amount,
        Account,
        Name,
        Note,
        Purse,
        Number,
        ColumnCount
    };

    using QAbstractTableModel::QAbstractTableModel;

    // A new journal, shown through `filter`.
    void setJournal(Journal journal, const Filter& filter);
    void setFilter(const Filter& filter);
    const Journal& journal() const { return m_journal; }
    const Selection& selection() const { return m_selection; }
    // The operation on a row of the model.
    const Operation& operation(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // The text of a cell as the list shows it.
    QString text(int row, int column) const;
    static QString headerText(int column);
    // The text of `operation` in `column`, its catalogue entries named by `journal`.
    static QString cellText(const Journal& journal, const Operation& operation, int column);

private:
    void applySort();
    static std::vector<int> collationRanks(const std::vector<QString>& texts, bool ascending);

    Journal m_journal;
    Selection m_selection;
    int m_sortColumn = -1; // the journal's own order, newest first
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

} // namespace operations
