#include "Selection.h"

#include <limits>

namespace operations {

namespace {

QChar folded(QChar ch)
{
    const QChar lower = ch.toLower();
    return lower == QChar(0x0451) ? QChar(0x0435) : lower; // ё as е
}

// Whether `text` holds `needle`, which is in search form already.
bool holds(QStringView text, QStringView needle)
{
    if (needle.size() > text.size())
        return false;
    for (qsizetype start = 0; start + needle.size() <= text.size(); ++start) {
        qsizetype i = 0;
        while (i < needle.size() && folded(text[start + i]) == needle[i])
            ++i;
        if (i == needle.size())
            return true;
    }
    return false;
}

store::Amount sizeOf(store::Amount amount)
{
    // The most negative amount has no positive twin; it is the largest size anyway.
    return amount.units() < 0 && amount.units() != std::numeric_limits<std::int64_t>::min()
               ? store::Amount::fromUnits(-amount.units())
               : amount;
}

bool passes(const Operation& operation, const Filter& filter, const QString& needle)
{
    if (filter.from && (!operation.date.isValid() || operation.date < *filter.from))
        return false;
    if (filter.to && (!operation.date.isValid() || operation.date > *filter.to))
        return false;
    if (filter.kind && operation.kind != *filter.kind)
        return false;
    const bool expense = operation.kind == Operation::Kind::Expense;
    if (filter.account && (!expense || operation.account != *filter.account))
        return false;
    if (filter.purse && (!expense || operation.purse != *filter.purse))
        return false;
    const store::Amount size = sizeOf(operation.amount);
    if ((filter.smallest && size < *filter.smallest) || (filter.largest && size > *filter.largest))
        return false;
    return needle.isEmpty() || holds(operation.name, needle) || holds(operation.note, needle);
}

} // namespace

QString searchForm(QStringView text)
{
    QString form;
    form.reserve(text.size());
    for (const QChar ch : text)
        form.append(folded(ch));
    return form;
}

Selection Selection::of(const Journal& journal, const Filter& filter)
{
    const QString needle = searchForm(filter.text.trimmed());
    Selection selection;
    const int count = static_cast<int>(journal.size());
    for (int row = 0; row < count; ++row) {
        const Operation& operation = journal.at(static_cast<std::size_t>(row));
        if (passes(operation, filter, needle)) {
            selection.rows.push_back(row);
            selection.sum += operation.change();
        }
    }
    return selection;
}

} // namespace operations
