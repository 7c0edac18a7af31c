#include "Expenses.h"

#include "LedgerTables.h"

#include <stdexcept>

namespace ledger {

BookedExpense Expenses::book(const Expense& expense)
{
    store::Transaction tx(m_store);
    const store::Amount stored = tables::storedBalance(tx);
    const store::Amount purse = tables::purseBalance(tx, expense.purse);
    if (!tx.ok())
        return {tables::finish(tx), {}, {}};
    BookedExpense booked;
    store::Amount spent;
    store::Amount balance;
    try {
        spent = expense.amount.roundedToCents();
        balance = (stored - spent).roundedToCents();
        booked.purseBalance = (purse - spent).roundedToCents();
    } catch (const std::overflow_error&) {
        booked.outcome = Outcome::OutOfRange;
        return booked;
    }
    tx.execute(QStringLiteral("INSERT INTO Bills (F1, F2, F3, F4, F5, F6) VALUES (?, ?, ?, ?, ?, ?)"),
               {expense.date, expense.account, spent, expense.name, expense.note, expense.purse});
    tables::writeStoredBalance(tx, balance);
    tables::writePurseBalance(tx, expense.purse, booked.purseBalance);
    booked.purseTotal = tables::purseTotal(tx);
    booked.outcome = tables::finish(tx);
    return booked;
}

} // namespace ledger
