#pragma once

#include "Journal.h"

#include "store/WideAmount.h"

#include <QString>

#include <optional>
#include <vector>

namespace operations {

// What the list of operations is narrowed to; an empty field lets every
// operation through.
struct Filter
{
    std::optional<QDate> from; // inclusive
    std::optional<QDate> to;   // inclusive
    std::optional<Operation::Kind> kind;
    std::optional<std::int32_t> account; // expenses of this account only
    std::optional<std::int32_t> purse;   // expenses paid from this purse only
    // Bounds of the amount's size, whatever its sign.
    std::optional<store::Amount> smallest;
    std::optional<store::Amount> largest;
    // Found in the name or comment, or in the note: case and "ё"/"е" alike.
    QString text;
};

// The text as the search compares it: lower case, "ё" as "е".
QString searchForm(QStringView text);

// The operations a filter lets through, as positions in the journal's list,
// in its order, with their count and the sum of their changes of money.
struct Selection
{
    std::vector<int> rows;
    store::WideAmount sum;

    static Selection of(const Journal& journal, const Filter& filter);
};

} // namespace operations
