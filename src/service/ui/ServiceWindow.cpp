#include "ServiceWindow.h"

#include "CopiesDialog.h"
#include "ServiceWindowTexts.h"
#include "store/CatalogueEntry.h"
#include "store/Dates.h"
#include "store/TextLimit.h"
#include "ui/CatalogueList.h"
#include "ui/CloseWindow.h"
#include "ui/Dialogs.h"
#include "ui/EnterKeys.h"
#include "ui/UiTexts.h"
#include "ui_ServiceWindow.h"

#include <QDir>
#include <QStyle>

namespace service {

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

// Refills a list with no entry chosen and an empty text.
void fill(QComboBox* list, const QStringList& entries)
{
    list->clear();
    list->addItems(entries);
    list->setCurrentIndex(-1);
}

} // namespace

ServiceWindow::ServiceWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ServiceWindow>()), m_store(store), m_dialogs(dialogs),
      m_today(std::move(today)), m_accounts(store), m_password(store), m_rates(store), m_backup(store),
      m_clearing(store), m_deletion(store), m_transfer(store)
{
    m_ui->setupUi(this);
    m_ui->T1A->setMaxLength(store::textLimit("Bills_Dict", "F1"));
    m_ui->C16->setIcon(style()->standardIcon(QStyle::SP_TrashIcon));
    connectButtons();
}

ServiceWindow::~ServiceWindow() = default;

void ServiceWindow::connectButtons()
{
    const auto onClick = [this](QAbstractButton* button, void (ServiceWindow::*handler)()) {
        connect(button, &QAbstractButton::clicked, this, handler);
    };
    onClick(m_ui->VC1A, &ServiceWindow::onEditAccountClicked);
    onClick(m_ui->VC2A, &ServiceWindow::onSaveAccountClicked);
    onClick(m_ui->VC3A, &ServiceWindow::onDeleteAccountClicked);
    onClick(m_ui->VC4A, &ServiceWindow::onNewAccountClicked);
    onClick(m_ui->C3, &ServiceWindow::onMoveExpensesClicked);
    onClick(m_ui->B2, &ServiceWindow::onPasswordClicked);
    onClick(m_ui->B7, &ServiceWindow::onRatesClicked);
    onClick(m_ui->C1, &ServiceWindow::onBackupClicked);
    onClick(m_ui->C2, &ServiceWindow::onRestoreClicked);
    onClick(m_ui->CopiesButton, &ServiceWindow::onCopiesClicked);
    onClick(m_ui->C16, &ServiceWindow::onClearClicked);
    onClick(m_ui->С12, &ServiceWindow::onListOperationsClicked);
    onClick(m_ui->C14, &ServiceWindow::onDeleteBankOperationClicked);
    onClick(m_ui->C15, &ServiceWindow::onDeleteExpenseClicked);
    onClick(m_ui->B1, &ServiceWindow::onCloseClicked);
    // The safety catch: C16 can be pressed only while Check1 is ticked.
    connect(m_ui->Check1, &QCheckBox::toggled, m_ui->C16, &QWidget::setEnabled);
    // An account chosen and Enter opens it; its name is saved from its field.
    auto* enter = new ui::EnterKeys(this);
    enter->addFrame({m_ui->Combo1A}, m_ui->VC1A);
    enter->addFrame({m_ui->T1A}, m_ui->VC2A);
    enter->addFrame({m_ui->Combo1B, m_ui->Combo1C}, m_ui->C3);
    enter->addFrame({m_ui->T12}, m_ui->С12);
    enter->addFrame({m_ui->Combo1}, m_ui->C14);
    enter->addFrame({m_ui->Combo2}, m_ui->C15);
    enter->addFrame({m_ui->T7, m_ui->T8}, m_ui->B7);
}

void ServiceWindow::load()
{
    showRates();
    const QDate lastBackup = m_backup.lastBackupDate();
    m_ui->T1->setText(lastBackup.isValid() ? store::displayDate(lastBackup) : QString());
    m_ui->T12->setText(store::displayDate(m_today()));
    billsRef();
}

void ServiceWindow::showRates()
{
    const auto rates = m_rates.read();
    const auto shown = [](const std::optional<store::Amount>& rate) {
        return rate ? rate->toDisplayString() : QString();
    };
    m_ui->T7->setText(rates ? shown(rates->usd) : QString());
    m_ui->T8->setText(rates ? shown(rates->eur) : QString());
}

// Refills the service window's three account lists; it leaves Combo1A
// enabled or disabled as it was. Gives the entries, or nullopt when the data
// file could not be read.
std::optional<QStringList> ServiceWindow::billsRef()
{
    const std::optional<QStringList> entries = m_accounts.entries();
    for (QComboBox* list : {m_ui->Combo1A, m_ui->Combo1B, m_ui->Combo1C})
        fill(list, entries.value_or(QStringList()));
    m_ui->T1A->clear();
    return entries;
}

// After an account was added, renamed or deleted the other windows' account
// lists follow.
void ServiceWindow::announceAccounts(const std::optional<QStringList>& entries)
{
    if (entries)
        emit accountsChanged(*entries);
}

void ServiceWindow::onEditAccountClicked() // VC1A "На редакцию"
{
    const auto code = store::CatalogueEntry::codeOf(m_ui->Combo1A->currentText());
    if (m_ui->Combo1A->currentText().isEmpty() || !code)
        return showError(text(texts::selectAccountToEdit));
    const auto name = m_accounts.name(*code);
    if (!name)
        return;
    m_ui->T1A->setText(*name);
    m_ui->Combo1A->setEnabled(false);
}

void ServiceWindow::onSaveAccountClicked() // VC2A "Сохранить"
{
    const QString name = m_ui->T1A->text();
    const auto code = store::CatalogueEntry::codeOf(m_ui->Combo1A->currentText());
    bool changed = false;
    if (name.isEmpty())
        showError(text(texts::accountNameRequired));
    else if (!code)
        showError(text(texts::selectAccountToEdit));
    else
        changed = m_dialogs.report(m_accounts.rename(*code, name));
    if (changed)
        showInformation(text(texts::changesSaved));
    const auto entries = billsRef();
    m_ui->Combo1A->setEnabled(true);
    if (changed)
        announceAccounts(entries);
}

void ServiceWindow::onDeleteAccountClicked() // VC3A "Удалить"
{
    const auto code = store::CatalogueEntry::codeOf(m_ui->Combo1A->currentText());
    store::Outcome removal = store::Outcome::notSaved();
    // No question: only an account without expenses is removed.
    if (m_ui->T1A->text().isEmpty() || !code)
        showError(text(texts::selectAccountToDelete));
    else
        removal = m_accounts.remove(*code);
    if (m_dialogs.report(removal))
        showInformation(text(texts::accountDeleted));
    const auto entries = billsRef();
    m_ui->Combo1A->setEnabled(true);
    if (removal)
        announceAccounts(entries);
    // The account still has expenses; moving them away empties it, so it is
    // offered as the source.
    else if (removal.isRefused())
        ui::CatalogueList::choose(m_ui->Combo1B, *code);
}

void ServiceWindow::onNewAccountClicked() // VC4A "Новый"
{
    const QString name =
        m_dialogs.askText(text(texts::newAccountPrompt), text(texts::newAccountTitle)).value_or(QString());
    bool changed = false;
    if (!name.isEmpty())
        changed = m_dialogs.report(m_accounts.add(name));
    if (changed)
        showInformation(text(texts::accountAdded));
    const auto entries = billsRef();
    if (changed)
        announceAccounts(entries);
}

void ServiceWindow::onMoveExpensesClicked() // C3 "Операция"
{
    const QString from = m_ui->Combo1B->currentText();
    const QString to = m_ui->Combo1C->currentText();
    const auto fromCode = store::CatalogueEntry::codeOf(from);
    const auto toCode = store::CatalogueEntry::codeOf(to);
    if (from.isEmpty() || to.isEmpty() || !fromCode || !toCode)
        return showError(text(texts::selectAccountsToMove));
    if (!confirm(text(texts::confirmMove) + QStringLiteral("\r\n") + text(texts::moveFrom) + from +
                 QStringLiteral("\r\n") + text(texts::moveTo) + to))
        return;
    if (m_dialogs.report(m_transfer.move(*fromCode, *toCode)))
        showInformation(text(texts::moveDone));
}

void ServiceWindow::onPasswordClicked() // B2 "Пароль"
{
    const auto current = m_password.current();
    if (!current)
        return;
    // Cancel counts as an empty answer: it leads to the question about removing.
    const QString typed = m_dialogs.askText(text(texts::passwordPrompt), text(texts::passwordTitle), *current)
                              .value_or(QString());
    if (!typed.isEmpty()) {
        if (m_dialogs.report(m_password.set(typed)))
            showInformation(text(texts::passwordSet));
        return;
    }
    if (confirm(text(texts::removePasswordQuestion)) && m_dialogs.report(m_password.remove()))
        showInformation(text(texts::passwordRemoved));
}

void ServiceWindow::onRatesClicked() // B7 "Задать"
{
    const auto usd = store::Amount::parse(m_ui->T7->text());
    const auto eur = store::Amount::parse(m_ui->T8->text());
    if (!usd || !eur)
        return showError(text(texts::mustBeNumber));
    if (!m_dialogs.report(m_rates.write(*usd, *eur)))
        return;
    showRates();
    showInformation(text(texts::ratesUpdated));
}

void ServiceWindow::onBackupClicked() // C1 "Спасти"
{
    if (!confirm(text(texts::backupQuestion)))
        return;
    const store::Result<QDate> made = m_backup.make(m_today());
    if (!made) {
        if (made.isRefused())
            showError(made.message());
        return;
    }
    m_ui->T1->setText(store::displayDate(made.value()));
    showInformation(text(texts::backupDone) + QDir::toNativeSeparators(m_backup.backupPath()));
}

void ServiceWindow::onRestoreClicked() // C2 "Восстановить"
{
    if (!confirm(text(texts::restoreQuestion)))
        return;
    finishRestore(m_backup.restore(m_today()));
}

void ServiceWindow::onCopiesClicked() // "Копии…"
{
    auto* dialog = new CopiesDialog(store::Copies(m_store).listed(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    connect(dialog, &CopiesDialog::restoreRequested, this, &ServiceWindow::onRestoreCopy);
    dialog->show();
}

void ServiceWindow::onRestoreCopy(const store::CopyEntry& copy)
{
    const QString made = copy.made.toString(QStringLiteral("dd.MM.yyyy HH:mm"));
    if (!confirm(text(texts::restoreCopyQuestion).arg(made)))
        return;
    finishRestore(m_backup.restoreCopy(QString::fromStdString(copy.path.string()), m_today()));
}

void ServiceWindow::finishRestore(const store::Result<QDate>& restored)
{
    if (!restored) {
        if (restored.isRefused())
            showError(restored.message());
        return;
    }
    m_ui->T1->setText(restored.value().isValid() ? store::displayDate(restored.value()) : QString());
    billsRef();
    showInformation(text(texts::restoreDone) + m_ui->T1->text() + text(texts::restoreSignInAgain));
    emit programEndRequested();
}

void ServiceWindow::onClearClicked() // C16
{
    if (!confirm(text(texts::clearQuestion)))
        return;
    if (!m_dialogs.report(m_clearing.clearAll()))
        return;
    emit moneyChanged();
    showInformation(text(texts::cleared));
}

void ServiceWindow::onListOperationsClicked() // С12 "Выбрать"
{
    if (!store::parseDate(m_ui->T12->text()))
        return showError(text(texts::invalidOperationDate));
    forDel();
}

// Lists the numbers of the bank and expense operations of the date in T12.
void ServiceWindow::forDel()
{
    m_ui->Combo1->clear();
    m_ui->Combo2->clear();
    const auto day = store::parseDate(m_ui->T12->text());
    const auto found = day ? m_deletion.list(*day) : std::nullopt;
    if (!found)
        return;
    fill(m_ui->Combo1, found->bank);
    fill(m_ui->Combo2, found->expenses);
}

void ServiceWindow::onDeleteBankOperationClicked() // C14 "Удалить"
{
    const auto found = m_deletion.findBankOperation(m_ui->Combo1->currentText());
    if (!m_dialogs.report(found) || !confirm(text(texts::confirmBankDeletion) + describe(found.value())))
        return;
    finishDeletion(found.value().number, m_deletion.deleteBankOperation(found.value().number));
}

void ServiceWindow::onDeleteExpenseClicked() // C15 "Удалить"
{
    const auto found = m_deletion.findExpense(m_ui->Combo2->currentText());
    if (!m_dialogs.report(found) || !confirm(text(texts::confirmBillDeletion) + describe(found.value())))
        return;
    finishDeletion(found.value().number, m_deletion.deleteExpense(found.value().number));
}

void ServiceWindow::finishDeletion(qlonglong number, const store::Outcome& outcome)
{
    if (!m_dialogs.report(outcome))
        return;
    emit moneyChanged();
    showInformation(text(texts::operationDeleted).arg(number));
    forDel();
}

QString ServiceWindow::describe(const OperationDeletion::Operation& operation)
{
    return QStringLiteral("\r\n\r\n") + text(texts::operationLine) + QString::number(operation.number) +
           text(texts::amountLine) + operation.amount.toDisplayString() + QStringLiteral("\r\n") +
           text(texts::nameLine) + operation.name;
}

void ServiceWindow::onCloseClicked() // B1 "Закрыть"
{
    ui::closeWindow(this);
}

void ServiceWindow::showError(const QString& message)
{
    m_dialogs.error(message);
}

void ServiceWindow::showInformation(const QString& message)
{
    m_dialogs.information(text(ui::texts::informationTitle), message);
}

bool ServiceWindow::confirm(const QString& question)
{
    return m_dialogs.confirm(text(ui::texts::attentionTitle), question);
}

} // namespace service
