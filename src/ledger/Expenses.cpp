#include "Expenses.h"

#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/TextLimit.h"
#include "store/Transaction.h"

namespace ledger {

store::Result<BookedExpense> Expenses::book(const Expense& expense)
{
    namespace money = store::money;
    if (auto refused = store::refuseTooLong({{"Bills", "F4", expense.name}, {"Bills", "F5", expense.note}}))
        return *refused;
    store::Transaction tx(m_store);
    const store::Amount stored = money::storedBalance(tx);
    const store::Amount purse = money::purseBalance(tx, expense.purse).value_or(store::Amount());
    const auto before = store::MoneyFigures::read(tx, {expense.date});
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::Amount spent = expense.amount.roundedToCents();
    const auto balance = (store::WideAmount(stored) - spent).toAmount();
    const auto purseBalance = (store::WideAmount(purse) - spent).toAmount();
    if (!balance || !purseBalance)
        return store::MoneyFigures::outOfRange();
    tx.execute(QStringLiteral("INSERT INTO Bills (F1, F2, F3, F4, F5, F6) VALUES (?, ?, ?, ?, ?, ?)"),
               {expense.date, expense.account, spent, expense.name, expense.note, expense.purse});
    money::writeStoredBalance(tx, *balance);
    money::writePurseBalance(tx, expense.purse, *purseBalance);
    const BookedExpense booked{*purseBalance, money::purseTotal(tx)};
    const store::Outcome outcome = store::MoneyFigures::commitInRange(tx, before);
    if (!outcome)
        return outcome;
    return booked;
}

} // namespace ledger
