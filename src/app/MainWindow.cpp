#include "MainWindow.h"

#include "MainWindowTexts.h"
#include "ledger/Balances.h"
#include "ledger/MonthStatistics.h"
#include "store/CatalogueEntry.h"
#include "store/Dates.h"
#include "store/TextLimit.h"
#include "ui/CatalogueList.h"
#include "ui/Dialogs.h"
#include "ui/EnterKeys.h"
#include "ui/FittedFigures.h"
#include "ui/UiTexts.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace app {

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

MainWindow::MainWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::MainWindow>()), m_store(store), m_dialogs(dialogs),
      m_today(std::move(today)), m_bank(store), m_expenses(store), m_purseOperations(store), m_purses(store)
{
    m_ui->setupUi(this);
    // A text field stops where its column in the data file ends.
    m_ui->R3->setMaxLength(store::textLimit("Bills", "F4"));
    m_ui->R4->setMaxLength(store::textLimit("Bills", "F5"));
    m_ui->T1->setMaxLength(store::textLimit("Purse_Dict", "F1"));
    m_ui->T3->setMaxLength(store::textLimit("Purse_Dict", "F3"));
    auto* figures = new ui::FittedFigures(this);
    for (QLineEdit* field : {m_ui->S1, m_ui->S2, m_ui->S3, m_ui->S4, m_ui->T10, m_ui->T11, m_ui->T4})
        figures->add(field);
    m_ui->R1->setFocus();
    connect(m_ui->B1, &QPushButton::clicked, this, &MainWindow::analyticsRequested);
    connect(m_ui->B2, &QPushButton::clicked, this, &MainWindow::serviceRequested);
    connect(m_ui->OperationsButton, &QPushButton::clicked, this, &MainWindow::operationsRequested);
    connect(m_ui->B4, &QPushButton::clicked, this, &MainWindow::helpRequested);
    connect(m_ui->B7, &QPushButton::clicked, this, &MainWindow::exitRequested);
    connectOperations();
}

MainWindow::~MainWindow() = default;

void MainWindow::connectOperations()
{
    connect(m_ui->Command1, &QPushButton::clicked, this, &MainWindow::onBankOperation);
    connect(m_ui->Command2, &QPushButton::clicked, this, &MainWindow::onPurseOperation);
    connect(m_ui->B3, &QPushButton::clicked, this, &MainWindow::onExpense);
    connect(m_ui->VC1, &QPushButton::clicked, this, &MainWindow::onOpenPurse);
    connect(m_ui->VC2, &QPushButton::clicked, this, &MainWindow::onSavePurse);
    connect(m_ui->VC3, &QPushButton::clicked, this, &MainWindow::onDeletePurse);
    connect(m_ui->VC4, &QPushButton::clicked, this, &MainWindow::onNewPurse);
    // Choosing a purse and pressing Enter opens it; its name and note are
    // saved from the last of the two.
    auto* enter = new ui::EnterKeys(this);
    enter->addFrame({m_ui->R1, m_ui->R2, m_ui->R3, m_ui->R4}, m_ui->B3);
    enter->addFrame({m_ui->T9}, m_ui->Command1);
    enter->addFrame({m_ui->T12}, nullptr);
    enter->addFrame({m_ui->Combo1}, m_ui->VC1);
    enter->addFrame({m_ui->T14}, m_ui->Command2);
    enter->addFrame({m_ui->T1, m_ui->T3}, m_ui->VC2);
    for (QLineEdit* field : {m_ui->T9, m_ui->T14, m_ui->R1, m_ui->T12})
        field->installEventFilter(this);
}

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

void MainWindow::showAccounts(const QStringList& entries)
{
    ui::CatalogueList::refill(m_ui->R2, entries);
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

void MainWindow::setAnalyticsAvailable(bool available)
{
    m_ui->B1->setEnabled(available);
}

void MainWindow::setServiceAvailable(bool available)
{
    m_ui->B2->setEnabled(available);
}

void MainWindow::setOperationsAvailable(bool available)
{
    m_ui->OperationsButton->setEnabled(available);
}

void MainWindow::onBankOperation()
{
    const QString typed = m_ui->T9->text();
    const auto amount = store::Amount::parse(typed);
    if (!amount) {
        m_dialogs.error(text(texts::mustBeNumber));
        return finishBankOperation();
    }
    const auto date = store::parseDate(m_ui->T12->text());
    if (!date) {
        m_dialogs.error(text(texts::mustBeValidDate));
        return finishBankOperation();
    }
    // Cancel gives an empty comment; the operation goes on.
    const QString comment =
        m_dialogs.askText(text(texts::commentPrompt) + typed, text(texts::commentTitle)).value_or(QString());
    // Anything but "Положить" chosen is a withdrawal.
    const bool deposit = m_ui->O1->isChecked();
    const store::Outcome outcome = m_bank.record(
        {*date, *amount, deposit ? ledger::BankDirection::Deposit : ledger::BankDirection::Withdrawal,
         comment});
    // A failure of the store has been shown; the handler stops with the window as it is.
    if (!outcome && !outcome.isRefused())
        return;
    if (m_dialogs.report(outcome))
        m_dialogs.information(text(texts::bankDoneTitle),
                              text(texts::amountPrefix) + typed +
                                  text(deposit ? texts::depositedSuffix : texts::withdrawnSuffix));
    finishBankOperation();
}

void MainWindow::finishBankOperation()
{
    refreshListsAndBalances();
    refreshMonthStatistics();
    m_ui->Combo1->setEnabled(true);
    m_ui->T9->clear();
}

void MainWindow::onPurseOperation()
{
    const std::optional<int> purse = openPurseCode();
    if (!purse)
        return m_dialogs.error(text(texts::openPurseFirst));
    const QString typed = m_ui->T14->text();
    const auto amount = store::Amount::parse(typed);
    if (!amount)
        return m_dialogs.error(text(texts::mustBeNumber));
    // Anything but "Положить" chosen takes money out.
    const bool putIn = m_ui->O3->isChecked();
    const auto confirm = [&] {
        m_dialogs.information(text(ui::texts::informationTitle),
                              text(texts::amountPrefix) + typed +
                                  text(putIn ? texts::putInPurseSuffix : texts::takenFromPurseSuffix));
    };
    const store::Outcome outcome = m_purseOperations.move(
        *purse, *amount, putIn ? ledger::PurseDirection::PutIn : ledger::PurseDirection::TakeOut, confirm);
    if (m_dialogs.report(outcome))
        refreshListsAndBalances();
}

void MainWindow::onExpense()
{
    const QString typed = m_ui->R1->text();
    const auto amount = store::Amount::parse(typed);
    const std::optional<int> account = chosenCode(m_ui->R2);
    const std::optional<int> purse = openPurseCode();
    if (!purse || !account || !amount)
        return m_dialogs.error(text(texts::expenseFieldsMissing));
    const auto date = store::parseDate(m_ui->T12->text());
    if (!date)
        return m_dialogs.error(text(texts::mustBeValidDate));
    const QString name = m_ui->R3->text();
    const auto booked = m_expenses.book({*date, *account, *amount, name, m_ui->R4->text(), *purse});
    if (!m_dialogs.report(booked))
        return;
    showMoneyInPurses(booked.value().purseBalance, booked.value().purseTotal);
    const QString lineBreak = text(texts::lineBreak);
    m_dialogs.information(text(ui::texts::informationTitle),
                          text(texts::expenseAmountLine) + typed + lineBreak + text(texts::expenseNameLine) +
                              name + lineBreak + text(texts::expenseDoneLine));
    // The account, the date and the open purse stay for the next expense.
    m_ui->R1->clear();
    m_ui->R3->clear();
    m_ui->R4->clear();
    refreshMonthStatistics();
}

void MainWindow::onOpenPurse()
{
    const std::optional<int> purse = chosenCode(m_ui->Combo1);
    if (!purse)
        return m_dialogs.error(text(texts::choosePurseToEdit));
    const std::optional<ledger::PurseCard> card = m_purses.open(*purse);
    if (!card)
        return;
    m_ui->T1->setText(card->name);
    m_ui->T3->setText(card->note);
    // A purse without a row of money leaves the state field as it is.
    if (card->balance)
        m_ui->T4->setText(card->balance->toDisplayString());
    // The choice cannot change while the purse is open.
    m_ui->Combo1->setEnabled(false);
}

void MainWindow::onSavePurse()
{
    const std::optional<int> purse = chosenCode(m_ui->Combo1);
    if (m_ui->T1->text().isEmpty() || !purse)
        m_dialogs.error(text(texts::purseCodeNeeded));
    else if (!m_dialogs.report(m_purses.rename(*purse, m_ui->T1->text(), m_ui->T3->text())))
        return;
    else
        m_dialogs.information(text(ui::texts::informationTitle), text(texts::changesSaved));
    refreshListsAndBalances();
}

void MainWindow::onDeletePurse()
{
    const std::optional<int> purse = chosenCode(m_ui->Combo1);
    if (m_ui->T1->text().isEmpty() || !purse) {
        m_dialogs.error(text(texts::choosePurseToDelete));
    } else if (m_dialogs.confirm(text(texts::deletePurseTitle), text(texts::confirmPurseDeletion))) {
        const store::Outcome outcome = m_purses.remove(*purse);
        if (!outcome && !outcome.isRefused())
            return;
        if (m_dialogs.report(outcome))
            m_dialogs.information(text(ui::texts::informationTitle), text(texts::purseDeleted));
    }
    refreshListsAndBalances();
}

void MainWindow::onNewPurse()
{
    // An empty name, or Cancel, adds nothing and says nothing.
    const QString name =
        m_dialogs.askText(text(texts::newPursePrompt), text(texts::newPurseTitle)).value_or(QString());
    if (!name.isEmpty()) {
        if (!m_dialogs.report(m_purses.create(name)))
            return;
        m_dialogs.information(text(ui::texts::informationTitle), text(texts::purseAdded));
    }
    refreshListsAndBalances();
}

void MainWindow::showMoneyInPurses(store::Amount purseBalance, store::WideAmount purseTotal)
{
    m_ui->T4->setText(purseBalance.toDisplayString());
    m_ui->T10->setText(purseTotal.toBalanceString());
}

std::optional<int> MainWindow::chosenCode(const QComboBox* list)
{
    return store::CatalogueEntry::codeOf(list->currentText());
}

std::optional<int> MainWindow::openPurseCode() const
{
    if (m_ui->T1->text().isEmpty())
        return std::nullopt;
    return chosenCode(m_ui->Combo1);
}

void MainWindow::clearPurseFields()
{
    m_ui->T1->clear();
    m_ui->T3->clear();
    m_ui->T4->clear();
    m_ui->T14->clear();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool keypadSeparator = (key->modifiers() & Qt::KeypadModifier) &&
                                 (key->key() == Qt::Key_Period || key->key() == Qt::Key_Comma);
    auto* field = qobject_cast<QLineEdit*>(watched);
    if (!keypadSeparator || !field)
        return QWidget::eventFilter(watched, event);
    // Amounts take the Russian decimal comma, the date field its dots.
    field->insert(field == m_ui->T12 ? QStringLiteral(".") : QStringLiteral(","));
    return true;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    emit closed();
}

} // namespace app
