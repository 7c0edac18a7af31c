#include "CopiesDialog.h"

#include "ServiceWindowTexts.h"
#include "ui/ScreenFit.h"
#include "ui/TextColumns.h"

#include "store/FailureCause.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QThreadPool>
#include <QVBoxLayout>

#include <algorithm>
#include <mutex>

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

// Held while a copy is read: a list opened again while the last one's worker
// still reads waits for it, so that one copy at a time is in memory.
std::mutex& judgingCopies()
{
    static std::mutex judging;
    return judging;
}

// A copy that can be put back: read, judged and found sound.
bool usable(const store::CopyEntry& copy)
{
    return copy.judged && copy.damage.isEmpty();
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
    judgeInBackground();
}

CopiesDialog::~CopiesDialog()
{
    *m_closed = true;
}

bool CopiesDialog::allJudged() const
{
    return m_waiting == 0;
}

void CopiesDialog::fill()
{
    m_list->setColumnCount(4);
    m_list->setHorizontalHeaderLabels({text(texts::copiesMade), text(texts::copiesWhy),
                                       text(texts::copiesBank), text(texts::copiesOperations)});
    m_list->setRowCount(static_cast<int>(m_copies.size()));
    for (int row = 0; row < m_list->rowCount(); ++row)
        fillRow(row);
    m_list->resizeColumnsToContents();
    // The reason a copy was made is the text that a wider dialog shows more of.
    m_textColumns = new ui::TextColumns(m_list);
    m_textColumns->keep({kWhyColumn});
    const auto first = std::ranges::find_if(m_copies, [](const auto& copy) { return usable(copy); });
    if (first != m_copies.end())
        m_list->selectRow(static_cast<int>(first - m_copies.begin()));
    m_restore->setEnabled(chosen());
    m_list->setFocus();
}

void CopiesDialog::fillRow(int row)
{
    const store::CopyEntry& copy = m_copies[static_cast<std::size_t>(row)];
    const bool sound = usable(copy);
    m_list->setItem(row, 0, cell(copy.made.toString(QStringLiteral("dd.MM.yyyy HH:mm")), sound));
    m_list->setItem(row, 1, cell(copy.why, sound));
    if (!copy.damage.isEmpty())
        m_list->setItem(row, 2, cell(text(texts::copyDamaged).arg(copy.damage), sound));
    else if (!copy.judged)
        m_list->setItem(row, 2, cell(text(texts::copyBeingChecked), sound));
    else
        m_list->setItem(row, 2, cell(copy.bank.toBalanceString(), sound, Qt::AlignRight));
    m_list->setItem(row, 3,
                    cell(sound ? QString::number(copy.operations) : QString(), sound, Qt::AlignRight));
}

// The copies not judged before, newest first, one after another on a worker
// thread. Each judgement comes back to the window's thread, where it is kept
// for the next listing even if the dialog has closed meanwhile.
void CopiesDialog::judgeInBackground()
{
    std::vector<std::pair<std::size_t, store::CopyEntry>> waiting;
    for (std::size_t row = 0; row < m_copies.size(); ++row)
        if (!m_copies[row].judged)
            waiting.emplace_back(row, m_copies[row]);
    m_waiting = waiting.size();
    if (waiting.empty())
        return;
    QThreadPool::globalInstance()->start(
        [waiting = std::move(waiting), dialog = QPointer<CopiesDialog>(this), closed = m_closed] {
            for (const auto& [row, copy] : waiting) {
                if (*closed)
                    return;
                store::CopyEntry judged = copy;
                try {
                    const std::lock_guard oneAtATime(judgingCopies());
                    judged = store::Copies::judged(copy);
                } catch (const std::bad_alloc& e) {
                    judged.damage = store::describeFailure(e); // shown, but not kept
                }
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(),
                    [dialog, row, judged] {
                        store::Copies::remember(judged);
                        if (dialog)
                            dialog->showJudged(row, judged);
                    },
                    Qt::QueuedConnection);
            }
        });
}

void CopiesDialog::showJudged(std::size_t row, const store::CopyEntry& copy)
{
    m_copies[row] = copy;
    fillRow(static_cast<int>(row));
    m_list->resizeColumnToContents(2);
    m_list->resizeColumnToContents(3);
    m_textColumns->keep({kWhyColumn});
    if (m_list->selectedItems().isEmpty() && usable(copy))
        m_list->selectRow(static_cast<int>(row)); // which enables the restore button
    if (--m_waiting == 0)
        emit allCopiesJudged();
}

const store::CopyEntry* CopiesDialog::chosen() const
{
    const QList<QTableWidgetItem*> selected = m_list->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    const store::CopyEntry& copy = m_copies[static_cast<std::size_t>(selected.front()->row())];
    return usable(copy) ? &copy : nullptr;
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
