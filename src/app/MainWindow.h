#pragma once

#include "ledger/Bank.h"
#include "ledger/Expenses.h"
#include "ledger/PurseCatalogue.h"
#include "ledger/PurseOperations.h"
#include "ui/Clock.h"

#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;
class QLineEdit;

namespace Ui {
class MainWindow;
}
namespace store {
class Store;
}
namespace ui {
class Dialogs;
}

namespace app {

// Form1 "Velmora": the household's figures and everyday operations: the
// bank, expenses, and the purses with their catalogue.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    MainWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The load step: lists, balances, month statistics and today's date.
    void load();
    // Refills the account and purse lists and the two balances; closes the
    // purse being edited.
    void refreshListsAndBalances();
    // Puts the catalogue's `entries` into the account list R2 alone: the
    // chosen account stays chosen while it exists, the open purse and the
    // typed fields stay as they are.
    void showAccounts(const QStringList& entries);
    // Income and expenses of the current and the previous month, by the
    // computer's calendar.
    void refreshMonthStatistics();
    // "Аналитика" and "Сервис" stay disabled until whoever shows those
    // windows is connected to them.
    void setAnalyticsAvailable(bool available);
    void setServiceAvailable(bool available);
    void setOperationsAvailable(bool available);

signals:
    void analyticsRequested();  // B1 "Аналитика"
    void serviceRequested();    // B2 "Сервис"
    void operationsRequested(); // "Операции"
    void helpRequested();       // B4 "Помощь"
    void exitRequested();       // B7 "Выход"
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    // The keypad's decimal key types the separator the field needs,
    // whatever the keyboard layout makes of it.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectOperations();
    void onBankOperation(); // Command1 "Операция"
    void finishBankOperation();
    void onPurseOperation(); // Command2 "Операция"
    void onExpense();        // B3 "Ввод"
    void onOpenPurse();      // VC1 "На редакцию"
    void onSavePurse();      // VC2 "Сохранить"
    void onDeletePurse();    // VC3 "Удалить"
    void onNewPurse();       // VC4 "Новый"
    void showMoneyInPurses(store::Amount purseBalance, store::WideAmount purseTotal);
    // The code of the entry a list shows ("3 - Питание" gives 3).
    static std::optional<int> chosenCode(const QComboBox* list);
    // The purse opened with "На редакцию": a name in T1 and a purse in Combo1.
    std::optional<int> openPurseCode() const;
    void clearPurseFields();

    std::unique_ptr<Ui::MainWindow> m_ui;
    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    ui::Clock m_today;
    ledger::Bank m_bank;
    ledger::Expenses m_expenses;
    ledger::PurseOperations m_purseOperations;
    ledger::PurseCatalogue m_purses;
};

} // namespace app
