#include "Bank.h"

#include "LedgerTables.h"

#include <stdexcept>

namespace ledger {

Outcome Bank::record(const BankOperation& operation)
{
    store::Transaction tx(m_store);
    const store::Amount stored = tables::storedBalance(tx);
    if (!tx.ok())
        return tables::finish(tx);
    store::Amount row;
    store::Amount balance;
    try {
        const store::Amount moved =
            operation.direction == BankDirection::Deposit ? operation.amount : -operation.amount;
        row = moved.roundedToCents();
        balance = (stored + moved).roundedToCents();
    } catch (const std::overflow_error&) {
        return Outcome::OutOfRange;
    }
    tx.execute(QStringLiteral("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)"),
               {operation.date, row, operation.comment});
    tables::writeStoredBalance(tx, balance);
    return tables::finish(tx);
}

} // namespace ledger
