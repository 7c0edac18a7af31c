#include "Journal.h"

#include "OperationsTexts.h"

#include "store/CatalogueEntry.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <algorithm>
#include <numeric>

namespace operations {

namespace {

QString named(const QHash<std::int32_t, QString>& catalogue, std::int32_t code)
{
    const auto found = catalogue.constFind(code);
    return store::CatalogueEntry::format(code, found == catalogue.cend() ? QString() : *found);
}

QHash<std::int32_t, QString> catalogue(store::Transaction& tx, const QString& table)
{
    QHash<std::int32_t, QString> names;
    for (const store::Row& row : tx.query(QStringLiteral("SELECT F0, F1 FROM ") + table))
        names.insert(static_cast<std::int32_t>(row.integer(0)), row.text(1));
    return names;
}

// Newest first; operations without a date last; on one day expenses before
// the bank's operations, and the higher number first. As one key that sorts
// ascending: the day counted back from the last possible one, the kind, then
// the number counted back.
std::uint64_t newerFirstKey(const Operation& op)
{
    constexpr std::int64_t kDays = std::int64_t(1) << 30; // past every Julian day of a stored date
    const std::int64_t back = op.date.isValid() ? kDays - 1 - op.date.toJulianDay() : kDays;
    const std::uint64_t kind = op.kind == Operation::Kind::Expense ? 0 : 1;
    const std::uint64_t number = 0xFFFFFFFFu - (static_cast<std::uint32_t>(op.number) ^ 0x80000000u);
    return static_cast<std::uint64_t>(back) << 33 | kind << 32 | number;
}

using KeyedIndex = std::pair<std::uint64_t, std::uint32_t>;

// Sorts by key, sixteen bits at a time from the lowest; a digit that every key
// shares (most of a date's bits) takes no pass. Keys are unique here, so the
// order it keeps for equal keys does not matter.
void sortByKey(std::vector<KeyedIndex>& items)
{
    constexpr int kDigitBits = 16;
    constexpr std::size_t kDigits = std::size_t(1) << kDigitBits;
    std::vector<KeyedIndex> spare(items.size());
    std::vector<std::size_t> start(kDigits + 1);
    for (int shift = 0; shift < 64; shift += kDigitBits) {
        const auto digit = [shift](const KeyedIndex& item) { return (item.first >> shift) & (kDigits - 1); };
        std::ranges::fill(start, 0);
        for (const KeyedIndex& item : items)
            ++start[digit(item) + 1];
        if (items.empty() || start[digit(items.front()) + 1] == items.size())
            continue;
        std::partial_sum(start.begin(), start.end(), start.begin());
        for (const KeyedIndex& item : items)
            spare[start[digit(item)]++] = item;
        items.swap(spare);
    }
}

// The places of the operations, newest first.
std::vector<std::uint32_t> newerFirstOrder(const std::vector<Operation>& operations)
{
    std::vector<KeyedIndex> keys(operations.size());
    for (std::size_t i = 0; i < operations.size(); ++i)
        keys[i] = {newerFirstKey(operations[i]), static_cast<std::uint32_t>(i)};
    sortByKey(keys);
    std::vector<std::uint32_t> order(keys.size());
    std::ranges::transform(keys, order.begin(), [](const KeyedIndex& key) { return key.second; });
    return order;
}

} // namespace

QString kindText(Operation::Kind kind)
{
    switch (kind) {
    case Operation::Kind::Deposit:
        return QString::fromUtf8(texts::deposit);
    case Operation::Kind::Withdrawal:
        return QString::fromUtf8(texts::withdrawal);
    case Operation::Kind::Expense:
        return QString::fromUtf8(texts::expense);
    }
    return {};
}

Operation::Kind bankKind(store::Amount amount)
{
    return amount.units() < 0 ? Operation::Kind::Withdrawal : Operation::Kind::Deposit;
}

std::vector<std::pair<std::int32_t, QString>> catalogueEntries(const QHash<std::int32_t, QString>& names)
{
    std::vector<std::pair<std::int32_t, QString>> entries;
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        entries.emplace_back(it.key(), store::CatalogueEntry::format(it.key(), it.value()));
    std::ranges::sort(entries, {}, &std::pair<std::int32_t, QString>::first);
    return entries;
}

Journal::Journal(std::vector<Operation> inOrder)
    : m_operations(std::move(inOrder)), m_order(m_operations.size())
{
    std::iota(m_order.begin(), m_order.end(), 0u);
}

QString Journal::accountName(const Operation& operation) const
{
    return operation.kind == Operation::Kind::Expense ? named(accounts, operation.account) : QString();
}

QString Journal::purseName(const Operation& operation) const
{
    return operation.kind == Operation::Kind::Expense ? named(purses, operation.purse) : QString();
}

std::optional<Journal> Journal::read(store::Store& store)
{
    Journal journal;
    store::Transaction tx(store);
    journal.accounts = catalogue(tx, QStringLiteral("Bills_Dict"));
    journal.purses = catalogue(tx, QStringLiteral("Purse_Dict"));
    std::vector<Operation>& all = journal.m_operations;
    const store::Rows count =
        tx.query(QStringLiteral("SELECT (SELECT COUNT(*) FROM Bank) + (SELECT COUNT(*) FROM Bills)"));
    all.reserve(count.empty() ? 0 : static_cast<std::size_t>(count.front().integer(0)));
    tx.forEachRow(QStringLiteral("SELECT F0, F1, F2, F3 FROM Bank"), {}, [&all](const store::RowView& row) {
        const store::Amount amount = row.amount(2);
        all.push_back({bankKind(amount),
                       static_cast<std::int32_t>(row.integer(0)),
                       row.date(1),
                       amount,
                       0,
                       0,
                       row.text(3),
                       {}});
    });
    tx.forEachRow(QStringLiteral("SELECT F0, F1, F2, F3, F4, F5, F6 FROM Bills"), {},
                  [&all](const store::RowView& row) {
                      all.push_back({Operation::Kind::Expense, static_cast<std::int32_t>(row.integer(0)),
                                     row.date(1), row.amount(3), static_cast<std::int32_t>(row.integer(2)),
                                     static_cast<std::int32_t>(row.integer(6)), row.text(4), row.text(5)});
                  });
    journal.generation = store.generation();
    if (!tx.commit())
        return std::nullopt;
    journal.m_order = newerFirstOrder(all);
    return journal;
}

bool Journal::changedSince(store::Store& store, std::uint64_t generation)
{
    store::Transaction tx(store); // opening it reads the file again if another program changed it
    const bool changed = store.generation() != generation;
    tx.commit();
    return changed;
}

} // namespace operations
