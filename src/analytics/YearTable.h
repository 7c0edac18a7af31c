#pragma once

#include "Period.h"
#include "store/WideAmount.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace store {
class Transaction;
}

namespace analytics {

// One line of the yearly account table: the account's label, its expenses
// month by month (empty where it had none) and their sum.
struct YearTableRow
{
    // "code - name", cut to the 20 characters the table keeps of a label.
    QString account;
    std::array<std::optional<store::WideAmount>, 12> months;
    store::WideAmount total;

    bool operator==(const YearTableRow&) const = default;
};

// A year's expenses by account and month. Accounts come in ascending code,
// only those with expenses in the year; the last row, " -- ИТОГО -- ", holds
// the month totals and the year's total and is there even for an empty year.
// Expenses booked on a code that is not in the catalogue are left out.
struct YearTable
{
    static constexpr int kLabelLength = 20;

    std::vector<YearTableRow> rows;

    const YearTableRow& totals() const { return rows.back(); }

    static YearTable read(store::Transaction& tx, const Period& period);
};

} // namespace analytics
