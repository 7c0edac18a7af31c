#pragma once

#include "Period.h"
#include "store/Amount.h"
#include "store/WideAmount.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace store {
class Transaction;
}

namespace analytics {

enum class DetailKind
{
    Income,   // the month's bank operations
    Expenses, // the month's expenses of one account
};

// One operation of the detail list. Texts are cut to the 100 characters the
// list keeps; purse and note belong to expenses only.
struct DetailRow
{
    QString date; // dd.MM.yyyy, with the time of day when there is one
    std::optional<store::Amount> amount;
    QString comment;
    QString purse;
    qlonglong number = 0;
    QString note;

    bool operator==(const DetailRow&) const = default;
};

// The operations of the chosen month, newest first: all bank operations
// ("Приход"), or the expenses of one account ("Расход"). An expense paid from
// a purse deleted since is listed too, so the list adds up to the month's
// expenses of the account.
struct DetailTable
{
    static constexpr int kTextLength = 100;

    DetailKind kind = DetailKind::Income;
    std::vector<DetailRow> rows;

    // "Приход" or "Расход".
    QString caption() const;
    // Income: Дата, Сумма, Комментарий, N_операции; expenses: Дата, Сумма,
    // Комментарий, Кошелек, N_операции, Примечание.
    QStringList headers() const;
    // The cells of one row in the order of headers().
    QStringList cells(const DetailRow& row) const;
    store::WideAmount total() const;

    static DetailTable income(store::Transaction& tx, const Period& period);
    // `accountEntry` is the account list's entry, "code - name".
    static DetailTable expenses(store::Transaction& tx, const Period& period, const QString& accountEntry);
};

} // namespace analytics
