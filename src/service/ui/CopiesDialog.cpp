#include "CopiesDialog.h"

#include "ServiceWindowTexts.h"
#include "ui/ScreenFit.h"
#include "ui/TextColumns.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace service {

namespace {

constexpr int kWhyColumn = 1;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QTableWidgetItem* cell(const QString& shown, bool usable, Qt::Alignment alignment = Qt::AlignLeft)
{
    auto* item = new QTableWidgetItem(shown);
    item->setTextAlignment(alignment | Qt::AlignVCenter);
    if (!usable)
        item->setFlags(Qt::ItemIsEnabled);
    return item;
}

} // namespace

CopiesDialog::CopiesDialog(std::vector<store::CopyEntry> copies, QWidget* parent)
    : QDialog(parent), m_copies(std::move(copies)), m_list(new QTableWidget(this))
{
    setObjectName(QStringLiteral("CopiesDialog"));
    setWindowTitle(text(texts::copiesTitle));
    m_list->setObjectName(QStringLiteral("CopyList"));
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->verticalHeader()->hide();
    auto* buttons = new QDialogButtonBox(this);
    m_restore = buttons->addButton(text(texts::restoreChosenCopy), QDialogButtonBox::AcceptRole);
    m_restore->setObjectName(QStringLiteral("RestoreCopy"));
    m_restore->setDefault(true);
    QPushButton* close = buttons->addButton(text(texts::closeCopies), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("CloseCopies"));
    connect(m_restore, &QPushButton::clicked, this, &CopiesDialog::onRestoreClicked);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_list, &QTableWidget::itemSelectionChanged, this, [this] { m_restore->setEnabled(chosen()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addWidget(buttons);
    fill();
    resize(ui::fittedToScreen(this, {640, 360}));
}

void CopiesDialog::fill()
{
    m_list->setColumnCount(4);
    m_list->setHorizontalHeaderLabels({text(texts::copiesMade), text(texts::copiesWhy),
                                       text(texts::copiesBank), text(texts::copiesOperations)});
    m_list->setRowCount(static_cast<int>(m_copies.size()));
    for (int row = 0; row < m_list->rowCount(); ++row) {
        const store::CopyEntry& copy = m_copies[static_cast<std::size_t>(row)];
        const bool sound = copy.damage.isEmpty();
        m_list->setItem(row, 0, cell(copy.made.toString(QStringLiteral("dd.MM.yyyy HH:mm")), sound));
        m_list->setItem(row, 1, cell(copy.why, sound));
        m_list->setItem(row, 2,
                        sound ? cell(copy.bank.toBalanceString(), sound, Qt::AlignRight)
                              : cell(text(texts::copyDamaged).arg(copy.damage), sound));
        m_list->setItem(row, 3,
                        cell(sound ? QString::number(copy.operations) : QString(), sound, Qt::AlignRight));
    }
    m_list->resizeColumnsToContents();
    // The reason a copy was made is the text that a wider dialog shows more of.
    (new ui::TextColumns(m_list))->keep({kWhyColumn});
    const auto first = std::ranges::find_if(m_copies, [](const auto& copy) { return copy.damage.isEmpty(); });
    if (first != m_copies.end())
        m_list->selectRow(static_cast<int>(first - m_copies.begin()));
    m_restore->setEnabled(chosen());
    m_list->setFocus();
}

const store::CopyEntry* CopiesDialog::chosen() const
{
    const QList<QTableWidgetItem*> selected = m_list->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    const store::CopyEntry& copy = m_copies[static_cast<std::size_t>(selected.front()->row())];
    return copy.damage.isEmpty() ? &copy : nullptr;
}

void CopiesDialog::onRestoreClicked()
{
    const store::CopyEntry* copy = chosen();
    if (!copy)
        return;
    const store::CopyEntry restored = *copy;
    accept();
    emit restoreRequested(restored);
}

} // namespace service
