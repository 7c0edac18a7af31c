#pragma once

#include "store/Row.h"

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <optional>

// One statement or query run as a handler of its own would run it: in a
// transaction that commits at once, so a change is saved before the call
// returns. For tests; the program's handlers hold their own Transaction.
// Declared in the store's namespace so that a call on a Store finds them.
namespace store {

class Store;

QVariant lookupValue(Store& store, const QString& table, const QString& column, const QString& criteria,
                     const QVariantList& params = {}, std::optional<int> index = std::nullopt);
bool execute(Store& store, const QString& sql, const QVariantList& params = {});
Rows query(Store& store, const QString& sql, const QVariantList& params = {});
Rows rows(Store& store, const QString& table);
// Opens the data file and closes it again: false when the store failed.
bool opens(Store& store);

} // namespace store
