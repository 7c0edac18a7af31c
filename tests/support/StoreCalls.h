#pragma once

#include "store/Transaction.h"

#include <optional>

// One statement or query run as a handler of its own would run it: in a
// transaction that commits at once, so a change is saved before the call
// returns. For tests; the program's handlers hold their own Transaction.
// Declared in the store's namespace so that a call on a Store finds them.
namespace store {

template <typename Work> auto inOwnTransaction(Store& store, Work work)
{
    Transaction tx(store);
    auto result = work(tx);
    return tx.commit() ? result : decltype(result){};
}

inline QVariant lookupValue(Store& store, const QString& table, const QString& column,
                            const QString& criteria, const QVariantList& params = {},
                            std::optional<int> index = std::nullopt)
{
    return inOwnTransaction(
        store, [&](Transaction& tx) { return tx.lookupValue(table, column, criteria, params, index); });
}
inline bool execute(Store& store, const QString& sql, const QVariantList& params = {})
{
    return inOwnTransaction(store, [&](Transaction& tx) { return tx.execute(sql, params); });
}
inline Rows query(Store& store, const QString& sql, const QVariantList& params = {})
{
    return inOwnTransaction(store, [&](Transaction& tx) { return tx.query(sql, params); });
}
inline Rows rows(Store& store, const QString& table)
{
    return inOwnTransaction(store, [&](Transaction& tx) { return tx.rows(table); });
}
// Opens the data file and closes it again: false when the store failed.
inline bool opens(Store& store)
{
    return inOwnTransaction(store, [](Transaction&) { return true; });
}

// On a store made for the call: what a new reader of the file sees.
inline Rows rows(Store&& store, const QString& table)
{
    return rows(store, table);
}

} // namespace store
