#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <QDate>
#include <QString>

namespace ledger {

enum class BankDirection
{
    Deposit,
    Withdrawal,
};

// Money put into the bank or taken out of it.
struct BankOperation
{
    QDate date;
    store::Amount amount; // as typed; a negative amount turns the direction round
    BankDirection direction = BankDirection::Withdrawal;
    QString comment;
};

// Deposits and withdrawals: one Bank row with the signed amount rounded to
// kopecks, half up towards plus infinity (a deposit of 12,345 is kept as
// 12,35, a withdrawal of 12,345 as −12,34), and the stored balance moved by
// exactly that row's amount, so it always equals the sum of the operations.
// A comment longer than its column holds is refused.
class Bank
{
public:
    explicit Bank(store::Store& store) : m_store(store) {}

    store::Outcome record(const BankOperation& operation);

private:
    store::Store& m_store;
};

} // namespace ledger
