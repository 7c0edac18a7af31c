#include "MainWindow.h"

#include "ledger/Balances.h"
#include "ledger/MonthStatistics.h"
#include "store/Dates.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>

namespace app {

MainWindow::MainWindow(store::Store& store, ledger::Clock today, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::MainWindow>()), m_store(store), m_today(std::move(today))
{
    m_ui->setupUi(this);
    m_ui->R1->setFocus();
    connect(m_ui->B1, &QPushButton::clicked, this, &MainWindow::analyticsRequested);
    connect(m_ui->B2, &QPushButton::clicked, this, &MainWindow::serviceRequested);
    connect(m_ui->B4, &QPushButton::clicked, this, &MainWindow::helpRequested);
    connect(m_ui->B7, &QPushButton::clicked, this, &MainWindow::exitRequested);
}

MainWindow::~MainWindow() = default;

void MainWindow::load()
{
    refreshListsAndBalances();
    refreshMonthStatistics();
    m_ui->T12->setText(store::displayDate(m_today()));
}

void MainWindow::refreshListsAndBalances()
{
    m_ui->Combo1->clear();
    m_ui->R2->clear();
    clearPurseFields();
    if (const auto balances = ledger::Balances::read(m_store)) {
        m_ui->R2->addItems(balances->accountEntries);
        m_ui->Combo1->addItems(balances->purseEntries);
        m_ui->T10->setText(balances->purseTotal.toBalanceString());
        m_ui->T11->setText(balances->bankAmount.toBalanceString());
    }
    // A refresh leaves no entry chosen.
    m_ui->R2->setCurrentIndex(-1);
    m_ui->Combo1->setCurrentIndex(-1);
    m_ui->Combo1->setEnabled(true);
}

void MainWindow::refreshMonthStatistics()
{
    const auto statistics = ledger::MonthStatistics::read(m_store, m_today());
    if (!statistics)
        return;
    m_ui->S1->setText(statistics->current.income.toDisplayString());
    m_ui->S2->setText(statistics->current.expenses.toDisplayString());
    m_ui->S3->setText(statistics->previous.income.toDisplayString());
    m_ui->S4->setText(statistics->previous.expenses.toDisplayString());
}

void MainWindow::clearPurseFields()
{
    m_ui->T1->clear();
    m_ui->T3->clear();
    m_ui->T4->clear();
    m_ui->T14->clear();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    emit closed();
}

} // namespace app
