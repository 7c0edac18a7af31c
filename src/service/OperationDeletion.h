#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace service {

// Removing one bank operation (Bank) or one expense (Bills) entered by
// mistake, with its effect on the money undone: the stored balance, and for
// an expense also the purse it was paid from.
class OperationDeletion
{
public:
    // The operation numbers of one day, highest (newest) first.
    struct Day
    {
        QStringList bank;
        QStringList expenses;
    };

    // What the confirmation shows of an operation.
    struct Operation
    {
        qlonglong number = 0;
        store::Amount amount;
        QString name;
    };

    explicit OperationDeletion(store::Store& store) : m_store(store) {}

    // Operations dated exactly `day` (with no time of day).
    std::optional<Day> list(QDate day);

    // The operation whose number is typed or chosen in `typed`; refused when
    // the text is not the number of an operation of its table.
    store::Result<Operation> findBankOperation(const QString& typed);
    store::Result<Operation> findExpense(const QString& typed);

    // Deleting a deposit lowers the balance by exactly its amount, deleting a
    // withdrawal (stored negative) raises it. A number no longer in the table
    // changes nothing. A deletion that would put the balance or a figure of
    // the main window out of the money columns' range is refused with
    // nothing written.
    store::Outcome deleteBankOperation(qlonglong number);
    // Gives the expense's amount back to the balance and to its purse.
    store::Outcome deleteExpense(qlonglong number);

private:
    store::Result<Operation> find(const QString& sql, const QString& typed);

    store::Store& m_store;
};

} // namespace service
