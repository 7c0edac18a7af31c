#include "Bank.h"

#include "LedgerTables.h"

namespace ledger {

store::Outcome Bank::record(const BankOperation& operation)
{
    store::Transaction tx(m_store);
    const store::Amount stored = tables::storedBalance(tx);
    const MoneyFigures before = MoneyFigures::read(tx, {operation.date});
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::WideAmount typed = operation.amount;
    const auto row =
        (operation.direction == BankDirection::Deposit ? typed : -typed).roundedToCents().toAmount();
    const auto balance = row ? (store::WideAmount(stored) + *row).toAmount() : std::nullopt;
    if (!balance)
        return tables::outOfRange();
    tx.execute(QStringLiteral("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)"),
               {operation.date, *row, operation.comment});
    tables::writeStoredBalance(tx, *balance);
    return tables::finishInRange(tx, before);
}

} // namespace ledger
