#pragma once

#include <QObject>

#include <vector>

class QTableView;

namespace ui {

// Gives a grid's spare width to its text columns. Each text column keeps at
// least the width the window gave it; when the grid is wider than all its
// columns together, the room left over is shared among the text columns, so
// a larger window shows more of the names and comments instead of empty space.
class TextColumns : public QObject
{
public:
    explicit TextColumns(QTableView* grid);

    // The text columns, with their present widths as their least ones; called
    // again after the window sizes its columns anew.
    void keep(std::vector<int> columns);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void spread();

    QTableView* m_grid;
    std::vector<int> m_columns;
    std::vector<int> m_least;
    bool m_spreading = false;
};

} // namespace ui
