#pragma once

#include "ledger/Clock.h"

#include <QWidget>

#include <memory>

namespace Ui {
class MainWindow;
}
namespace store {
class Store;
}

namespace app {

// Form1 "Velmora": the household's figures and everyday operations.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    MainWindow(store::Store& store, ledger::Clock today, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The load step: lists, balances, month statistics and today's date.
    void load();
    // Refills the account and purse lists and the two balances; closes the
    // purse being edited.
    void refreshListsAndBalances();
    // Income and expenses of the current and the previous month, by the
    // computer's calendar.
    void refreshMonthStatistics();

signals:
    void analyticsRequested(); // B1 "Аналитика"
    void serviceRequested();   // B2 "Сервис"
    void helpRequested();      // B4 "Помощь"
    void exitRequested();      // B7 "Выход"
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void clearPurseFields();

    std::unique_ptr<Ui::MainWindow> m_ui;
    store::Store& m_store;
    ledger::Clock m_today;
};

} // namespace app
