#include "TextColumns.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

#include <numeric>

namespace ui {

TextColumns::TextColumns(QTableView* grid) : QObject(grid), m_grid(grid)
{
    grid->viewport()->installEventFilter(this);
}

void TextColumns::keep(std::vector<int> columns)
{
    m_columns = std::move(columns);
    m_least.clear();
    for (int column : m_columns)
        m_least.push_back(m_grid->columnWidth(column));
    spread();
}

bool TextColumns::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        spread();
    return QObject::eventFilter(watched, event);
}

void TextColumns::spread()
{
    const QHeaderView* header = m_grid->horizontalHeader();
    if (m_spreading || m_columns.empty() || header->count() == 0)
        return;
    m_spreading = true;
    int others = header->length();
    for (int column : m_columns)
        others -= m_grid->columnWidth(column);
    const int least = std::accumulate(m_least.begin(), m_least.end(), 0);
    const int spare = std::max(0, m_grid->viewport()->width() - others - least);
    const int count = static_cast<int>(m_columns.size());
    for (int i = 0; i < count; ++i)
        m_grid->setColumnWidth(m_columns[i], m_least[i] + spare / count + (i < spare % count ? 1 : 0));
    m_spreading = false;
}

} // namespace ui
