#include "Bank.h"

#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/TextLimit.h"
#include "store/Transaction.h"

namespace ledger {

store::Outcome Bank::record(const BankOperation& operation)
{
    if (auto refused = store::refuseTooLong({{"Bank", "F3", operation.comment}}))
        return *refused;
    store::Transaction tx(m_store);
    const store::Amount stored = store::money::storedBalance(tx);
    const auto before = store::MoneyFigures::read(tx, {operation.date});
    if (!tx.ok())
        return store::Outcome::committed(tx.commit());
    const store::WideAmount typed = operation.amount;
    const auto row =
        (operation.direction == BankDirection::Deposit ? typed : -typed).roundedToCents().toAmount();
    const auto balance = row ? (store::WideAmount(stored) + *row).toAmount() : std::nullopt;
    if (!balance)
        return store::MoneyFigures::outOfRange();
    tx.execute(QStringLiteral("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)"),
               {operation.date, *row, operation.comment});
    store::money::writeStoredBalance(tx, *balance);
    return store::MoneyFigures::commitInRange(tx, before);
}

} // namespace ledger
