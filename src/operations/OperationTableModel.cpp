#include "OperationTableModel.h"

#include "OperationsTexts.h"

#include <QCollator>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <numeric>
#include <utility>

namespace operations {

namespace {

const char* const kHeaders[] = {texts::columnDate,    texts::columnKind,  texts::columnAmount,
                                texts::columnAccount, texts::columnName,  texts::columnNote,
                                texts::columnPurse,   texts::columnNumber};

} // namespace

QString OperationTableModel::cellText(const Journal& journal, const Operation& op, int column)
{
    switch (column) {
    case OperationTableModel::Date:
        return op.date.toString(QStringLiteral("dd.MM.yyyy"));
    case OperationTableModel::Kind:
        return kindText(op.kind);
    case OperationTableModel::Amount:
        return op.change().toDisplayString();
    case OperationTableModel::Account:
        return journal.accountName(op);
    case OperationTableModel::Name:
        return op.name;
    case OperationTableModel::Note:
        return op.note;
    case OperationTableModel::Purse:
        return journal.purseName(op);
    case OperationTableModel::Number:
        return QString::number(op.number);
    }
    return {};
}

namespace {

// Orders two operations by a column that is not text.
int compareValues(const Operation& a, const Operation& b, int column)
{
    const auto order = [](const auto& x, const auto& y) { return x < y ? -1 : (y < x ? 1 : 0); };
    switch (column) {
    case OperationTableModel::Date:
        return order(a.date, b.date);
    case OperationTableModel::Amount:
        return order(a.change(), b.change());
    case OperationTableModel::Number:
        return order(a.number, b.number);
    default:
        return order(a.kind, b.kind);
    }
}

bool isText(int column)
{
    return column == OperationTableModel::Account || column == OperationTableModel::Name ||
           column == OperationTableModel::Note || column == OperationTableModel::Purse;
}

} // namespace

void OperationTableModel::setJournal(Journal journal, const Filter& filter)
{
    beginResetModel();
    m_journal = std::move(journal);
    m_selection = Selection::of(m_journal, filter);
    applySort();
    endResetModel();
}

void OperationTableModel::setFilter(const Filter& filter)
{
    beginResetModel();
    m_selection = Selection::of(m_journal, filter);
    applySort();
    endResetModel();
}

const Operation& OperationTableModel::operation(int row) const
{
    return m_journal.at(static_cast<std::size_t>(m_selection.rows[static_cast<std::size_t>(row)]));
}

int OperationTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_selection.rows.size());
}

int OperationTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString OperationTableModel::text(int row, int column) const
{
    return cellText(m_journal, operation(row), column);
}

QVariant OperationTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::TextAlignmentRole && (index.column() == Amount || index.column() == Number))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant OperationTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return headerText(section);
}

QString OperationTableModel::headerText(int column)
{
    return column >= 0 && column < ColumnCount ? QString::fromUtf8(kHeaders[column]) : QString();
}

void OperationTableModel::sort(int column, Qt::SortOrder order)
{
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = order;
    applySort();
    endResetModel();
}

// Ties keep the journal's order, newest first. Texts sort as a Russian reader
// expects, with numbers in them by value ("3 - Питание" before "10 - Связь").
// A household's texts repeat (the same shop, the same account), so each
// distinct text is ranked once and the rows are then placed by rank.
void OperationTableModel::applySort()
{
    std::vector<int>& rows = m_selection.rows;
    std::ranges::sort(rows);
    if (m_sortColumn < 0 || m_sortColumn >= ColumnCount)
        return;
    const bool ascending = m_sortOrder == Qt::AscendingOrder;
    const auto all = [this](int place) -> const Operation& {
        return m_journal.at(static_cast<std::size_t>(place));
    };
    if (!isText(m_sortColumn)) {
        std::ranges::stable_sort(rows, [&](int a, int b) {
            const int c = compareValues(all(a), all(b), m_sortColumn);
            return ascending ? c < 0 : c > 0;
        });
        return;
    }
    QHash<QString, int> indexOf; // of each distinct text in `distinct`
    std::vector<QString> distinct;
    std::vector<int> textOfRow(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        QString text = cellText(m_journal, all(rows[i]), m_sortColumn);
        auto found = indexOf.constFind(text);
        if (found == indexOf.cend()) {
            found = indexOf.insert(text, static_cast<int>(distinct.size()));
            distinct.push_back(std::move(text));
        }
        textOfRow[i] = *found;
    }
    const std::vector<int> rank = collationRanks(distinct, ascending);
    const auto rankOf = [&](std::size_t i) {
        return static_cast<std::size_t>(rank[static_cast<std::size_t>(textOfRow[i])]);
    };
    // Placed by rank, each rank's rows in the order they had.
    std::vector<std::size_t> start(distinct.size() + 1, 0);
    for (std::size_t i = 0; i < rows.size(); ++i)
        ++start[rankOf(i) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    std::vector<int> sorted(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        sorted[start[rankOf(i)]++] = rows[i];
    rows = std::move(sorted);
}

// The place of each text in the order a Russian reader expects; texts that
// order as equal (they differ only in case) share one.
std::vector<int> OperationTableModel::collationRanks(const std::vector<QString>& texts, bool ascending)
{
    QCollator collator(QLocale(QLocale::Russian, QLocale::Russia));
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, int>> keyed;
    keyed.reserve(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        keyed.emplace_back(collator.sortKey(texts[i]), static_cast<int>(i));
    std::ranges::sort(keyed, [ascending](const auto& a, const auto& b) {
        const int c = a.first.compare(b.first);
        return ascending ? c < 0 : c > 0;
    });
    std::vector<int> rank(texts.size());
    int place = 0;
    for (std::size_t i = 0; i < keyed.size(); ++i) {
        if (i > 0 && keyed[i].first.compare(keyed[i - 1].first) != 0)
            ++place;
        rank[static_cast<std::size_t>(keyed[i].second)] = place;
    }
    return rank;
}

} // namespace operations
