#include "Expenses.h"

#include "LedgerTables.h"

namespace ledger {

store::Result<BookedExpense> Expenses::book(const Expense& expense)
{
    store::Transaction tx(m_store);
    const store::Amount stored = tables::storedBalance(tx);
    const store::Amount purse = tables::purseBalance(tx, expense.purse);
    const MoneyFigures before = MoneyFigures::read(tx, {expense.date});
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::Amount spent = expense.amount.roundedToCents();
    const auto balance = (store::WideAmount(stored) - spent).toAmount();
    const auto purseBalance = (store::WideAmount(purse) - spent).toAmount();
    if (!balance || !purseBalance)
        return tables::outOfRange();
    tx.execute(QStringLiteral("INSERT INTO Bills (F1, F2, F3, F4, F5, F6) VALUES (?, ?, ?, ?, ?, ?)"),
               {expense.date, expense.account, spent, expense.name, expense.note, expense.purse});
    tables::writeStoredBalance(tx, *balance);
    tables::writePurseBalance(tx, expense.purse, *purseBalance);
    const BookedExpense booked{*purseBalance, tables::purseTotal(tx)};
    store::Outcome outcome = tables::finishInRange(tx, before);
    if (!outcome)
        return outcome;
    return booked;
}

} // namespace ledger
