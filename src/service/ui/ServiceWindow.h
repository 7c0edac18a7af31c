#pragma once

#include "service/AccountCatalogue.h"
#include "service/Backup.h"
#include "service/Clearing.h"
#include "service/CurrencyRates.h"
#include "service/ExpenseTransfer.h"
#include "service/OperationDeletion.h"
#include "service/Password.h"
#include "store/Copies.h"
#include "ui/Clock.h"

#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class ServiceWindow;
}
namespace ui {
class Dialogs;
}

namespace service {

// Form2 "Velmora (сервис)": the household's maintenance. Each button reads
// its fields, checks them, calls one operation and shows the outcome. What the
// main window shows is refreshed by whoever listens to the signals.
class ServiceWindow : public QWidget
{
    Q_OBJECT

public:
    ServiceWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent = nullptr);
    ~ServiceWindow() override;

    // The load step: rates, the last backup's date, today's date and the
    // account lists.
    void load();

signals:
    // The account catalogue changed: the other windows' account lists are
    // stale; `entries` is the catalogue now.
    void accountsChanged(const QStringList& entries);
    // Money or catalogues changed: the main window's figures and lists are stale.
    void moneyChanged();
    // A restore replaced the data file: the program ends so the user signs in again.
    void programEndRequested();

private:
    void connectButtons();
    std::optional<QStringList> billsRef();
    void announceAccounts(const std::optional<QStringList>& entries);
    void showRates();
    void forDel();

    void onEditAccountClicked();
    void onSaveAccountClicked();
    void onDeleteAccountClicked();
    void onNewAccountClicked();
    void onMoveExpensesClicked();
    void onPasswordClicked();
    void onRatesClicked();
    void onBackupClicked();
    void onRestoreClicked();
    void onCopiesClicked();
    void onRestoreCopy(const store::CopyEntry& copy);
    // The ending of every restore: its outcome shown, the program ends when done.
    void finishRestore(const store::Result<QDate>& restored);
    void onClearClicked();
    void onListOperationsClicked();
    void onDeleteBankOperationClicked();
    void onDeleteExpenseClicked();
    void finishDeletion(qlonglong number, const store::Outcome& outcome);
    void onCloseClicked();

    void showError(const QString& text);
    void showInformation(const QString& text);
    bool confirm(const QString& text);
    // The operation's summary after its question: number, amount, name.
    static QString describe(const OperationDeletion::Operation& operation);

    std::unique_ptr<Ui::ServiceWindow> m_ui;
    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    ui::Clock m_today;
    AccountCatalogue m_accounts;
    Password m_password;
    CurrencyRates m_rates;
    Backup m_backup;
    Clearing m_clearing;
    OperationDeletion m_deletion;
    ExpenseTransfer m_transfer;
};

} // namespace service
