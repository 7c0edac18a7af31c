#include "Journal.h"

#include "OperationsTexts.h"

#include "store/CatalogueEntry.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <algorithm>

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

// Newest first; operations without a date last; on one day the higher number first.
bool newerFirst(const Operation& a, const Operation& b)
{
    if (a.date != b.date)
        return !b.date.isValid() || (a.date.isValid() && a.date > b.date);
    if (a.kind != b.kind)
        return a.kind == Operation::Kind::Expense;
    return a.number > b.number;
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
    std::vector<Operation>& all = journal.operations;
    tx.forEachRow(QStringLiteral("SELECT F0, F1, F2, F3 FROM Bank"), {}, [&all](store::Row row) {
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
    tx.forEachRow(QStringLiteral("SELECT F0, F1, F2, F3, F4, F5, F6 FROM Bills"), {}, [&all](store::Row row) {
        all.push_back({Operation::Kind::Expense, static_cast<std::int32_t>(row.integer(0)), row.date(1),
                       row.amount(3), static_cast<std::int32_t>(row.integer(2)),
                       static_cast<std::int32_t>(row.integer(6)), row.text(4), row.text(5)});
    });
    journal.generation = store.generation();
    if (!tx.commit())
        return std::nullopt;
    std::ranges::sort(all, newerFirst);
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
