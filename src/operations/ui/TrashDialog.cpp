#include "TrashDialog.h"

#include "OperationsWindowTexts.h"

#include "operations/OperationTableModel.h"
#include "ui/Dialogs.h"
#include "ui/ScreenFit.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <set>

namespace operations {

namespace {

// When and why an entry went, then the operation's own columns.
constexpr int kOwnColumns = 2;

} // namespace

TrashDialog::TrashDialog(store::Store& store, ui::Dialogs& dialogs, const Journal& names, QWidget* parent)
    : QDialog(parent), m_store(store), m_dialogs(dialogs), m_names(names), m_list(new QTableWidget(this)),
      m_summary(new QLabel(this))
{
    setObjectName(QStringLiteral("TrashDialog"));
    setWindowTitle(tr8(texts::trashTitle));
    auto* layout = new QVBoxLayout(this);
    m_list->setObjectName(QStringLiteral("TrashList"));
    QStringList headers{tr8(texts::trashPutAt), tr8(texts::trashReason)};
    for (int column = 0; column < OperationTableModel::ColumnCount; ++column)
        headers.append(OperationTableModel::headerText(column));
    m_list->setColumnCount(static_cast<int>(headers.size()));
    m_list->setHorizontalHeaderLabels(headers);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->verticalHeader()->hide();
    // Each column as wide as its values, on one line; the last one takes what is left.
    m_list->setWordWrap(false);
    m_list->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(m_list, 1);
    m_summary->setObjectName(QStringLiteral("TrashSummary"));
    layout->addWidget(m_summary);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* putBack = buttons->addButton(tr8(texts::trashPutBack), QDialogButtonBox::ActionRole);
    putBack->setObjectName(QStringLiteral("PutBackButton"));
    QPushButton* close = buttons->addButton(tr8(texts::close), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("CloseButton"));
    putBack->setDefault(true); // Enter puts the chosen entries back
    layout->addWidget(buttons);
    connect(putBack, &QPushButton::clicked, this, &TrashDialog::putBackChosen);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    resize(ui::fittedToScreen(this, QSize(1000, 420)));
    refill();
}

void TrashDialog::refill()
{
    std::optional<std::vector<TrashEntry>> read = Trash(m_store).list();
    if (!read)
        return; // the store has said why
    m_entries = std::move(*read);
    m_list->clearContents();
    m_list->setRowCount(static_cast<int>(m_entries.size()));
    for (int row = 0; row < m_list->rowCount(); ++row) {
        const TrashEntry& entry = m_entries[static_cast<std::size_t>(row)];
        m_list->setItem(row, 0,
                        new QTableWidgetItem(entry.putAt.toString(QStringLiteral("dd.MM.yyyy HH:mm"))));
        m_list->setItem(row, 1, new QTableWidgetItem(entry.reason));
        for (int column = 0; column < OperationTableModel::ColumnCount; ++column) {
            auto* item =
                new QTableWidgetItem(OperationTableModel::cellText(m_names, entry.operation, column));
            if (column == OperationTableModel::Amount || column == OperationTableModel::Number)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_list->setItem(row, kOwnColumns + column, item);
        }
    }
    m_summary->setText(tr8(texts::trashSummary).arg(m_entries.size()).arg(Trash::kTrashDays));
}

void TrashDialog::putBackChosen()
{
    std::set<int> rows;
    for (const QModelIndex& index : m_list->selectionModel()->selectedIndexes())
        rows.insert(index.row());
    std::vector<std::int32_t> chosen;
    for (const int row : rows)
        chosen.push_back(m_entries[static_cast<std::size_t>(row)].number);
    if (chosen.empty())
        return;
    const bool done = m_dialogs.report(Trash(m_store).putBack(std::move(chosen)));
    refill();
    if (done)
        emit returned();
}

} // namespace operations
