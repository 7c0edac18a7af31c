#include "OperationsWindow.h"

#include "OperationsWindowTexts.h"

#include "CorrectionDialog.h"
#include "OperationsReport.h"
#include "TrashDialog.h"

#include "analytics/ui/ReportPreview.h"
#include "operations/Correction.h"
#include "operations/Deletion.h"
#include "operations/OperationTableModel.h"
#include "operations/OperationsCsv.h"
#include "operations/Trash.h"
#include "store/AtomicFile.h"
#include "store/Dates.h"
#include "store/FailureCause.h"
#include "store/Store.h"
#include "ui/Dialogs.h"
#include "ui/ScreenFit.h"
#include "ui/UiTexts.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QTableView>

namespace operations {

OperationsWindow::OperationsWindow(store::Store& store, ui::Dialogs& dialogs, QWidget* parent)
    : QWidget(parent), m_store(store), m_dialogs(dialogs), m_model(new OperationTableModel(this))
{
    setObjectName(QStringLiteral("OperationsWindow"));
    setWindowTitle(tr8(texts::windowTitle));
    m_askSavePath = [this](const QString& suggested) {
        QFileDialog dialog(this, tr8(texts::exportTitle), suggested, tr8(texts::exportFilter));
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(QStringLiteral("csv"));
        dialog.setOption(QFileDialog::DontUseNativeDialog); // Russian on every desktop
        return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
    };
    m_editCorrection = [](CorrectionDialog& dialog) { return dialog.exec() == QDialog::Accepted; };
    m_viewTrash = [](TrashDialog& dialog) { dialog.exec(); };
    m_viewReport = [this](const analytics::ReportDocument& report) {
        analytics::ReportPreview::show(report, this, m_dialogs);
    };
    buildFields();
}

QSize OperationsWindow::sizeHint() const
{
    return ui::fittedToScreen(this, QSize(1040, 600));
}

OperationsWindow::~OperationsWindow() = default;

void OperationsWindow::reload()
{
    if (m_read && !Journal::changedSince(m_store, m_model->journal().generation))
        return;
    std::optional<Journal> journal = Journal::read(m_store);
    if (!journal)
        return; // the store has shown why; the list stays as it was
    fillCatalogue(m_account, journal->accounts);
    fillCatalogue(m_purse, journal->purses);
    m_model->setJournal(std::move(*journal), filter());
    m_read = true;
    showSummary();
}

void OperationsWindow::exportCsv()
{
    const QString path = m_askSavePath(QDir::home().filePath(tr8(texts::exportFileName)));
    if (path.isEmpty())
        return;
    const QByteArray csv = operationsCsv(*m_model);
    try {
        store::writeFileAtomically(
            path.toStdString(),
            {reinterpret_cast<const std::uint8_t*>(csv.constData()), static_cast<std::size_t>(csv.size())});
    } catch (const std::exception& e) {
        m_dialogs.error(tr8(texts::exportFailed).arg(path, store::describeFailure(e)));
        return;
    }
    m_dialogs.information(tr8(texts::windowTitle), tr8(texts::exportDone).arg(path));
}

void OperationsWindow::deleteChosen()
{
    std::vector<Operation> chosen;
    store::WideAmount sum;
    for (const QModelIndex& row : m_list->selectionModel()->selectedRows()) {
        chosen.push_back(m_model->operation(row.row()));
        sum += chosen.back().change();
    }
    if (chosen.empty())
        return;
    if (!m_dialogs.confirm(QString::fromUtf8(ui::texts::attentionTitle),
                           tr8(texts::deleteQuestion).arg(chosen.size()).arg(sum.toBalanceString())))
        return;
    const store::Result<std::int32_t> deleted = deleteOperations(m_store, chosen);
    changed(deleted, deleted ? std::optional(deleted.value()) : std::nullopt);
}

void OperationsWindow::correctCurrent()
{
    const QModelIndex current = m_list->currentIndex();
    if (!current.isValid())
        return;
    const Operation old = m_model->operation(current.row());
    CorrectionDialog dialog(old, m_model->journal(), this);
    while (m_editCorrection(dialog)) {
        const std::optional<store::Amount> amount = store::Amount::parse(dialog.amountText());
        const std::optional<QDate> date = store::parseDate(dialog.dateText());
        if (!amount || !date) {
            m_dialogs.error(tr8(amount ? ui::texts::mustBeValidDate : ui::texts::mustBeNumber));
            continue;
        }
        const Operation wanted = dialog.corrected(*date, *amount);
        if (wanted == old)
            return; // nothing to correct: nothing is written, nothing goes to the trash
        const store::Result<std::int32_t> corrected = correctOperation(m_store, old, wanted);
        if (!corrected.isRefused())
            return changed(corrected, corrected ? std::optional(corrected.value()) : std::nullopt);
        m_dialogs.report(corrected);
    }
}

void OperationsWindow::undoLast()
{
    if (m_undo.empty())
        return;
    const Undoable last = m_undo.back();
    m_undo.pop_back();
    const store::Outcome outcome = Trash(m_store).undo(last.action, last.reading);
    if (m_store.readings() != last.reading)
        m_undo.clear(); // every action before belongs to the replaced file
    changed(outcome);
}

void OperationsWindow::changed(const store::Outcome& outcome, std::optional<std::int32_t> action)
{
    const bool done = m_dialogs.report(outcome);
    if (done && action.value_or(0) != 0)
        m_undo.push_back({*action, m_store.readings()});
    m_undoButton->setEnabled(!m_undo.empty());
    reload();
    if (done)
        emit moneyChanged();
}

void OperationsWindow::showTrash()
{
    reload(); // the catalogues name the entries' accounts and purses
    TrashDialog dialog(m_store, m_dialogs, m_model->journal(), this);
    connect(&dialog, &TrashDialog::returned, this, [this] {
        reload();
        emit moneyChanged();
    });
    m_viewTrash(dialog);
}

void OperationsWindow::printList()
{
    const auto rows = static_cast<std::size_t>(m_model->rowCount());
    if (rows > kMostPrintedRows) {
        m_dialogs.error(tr8(texts::tooManyToPrint).arg(rows).arg(kMostPrintedRows));
        return;
    }
    m_viewReport(operationsReport(*m_model, filterDescription()));
}

bool OperationsWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete)
            deleteChosen();
        else if (key == Qt::Key_Return || key == Qt::Key_Enter)
            correctCurrent();
        else
            return QWidget::eventFilter(watched, event);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool OperationsWindow::event(QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        findChild<QPushButton*>(QStringLiteral("CloseButton"))->click();
        return true;
    }
    return QWidget::event(event);
}

} // namespace operations
