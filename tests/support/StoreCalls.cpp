#include "StoreCalls.h"

#include "store/Transaction.h"

namespace store {

QVariant lookupValue(Store& store, const QString& table, const QString& column, const QString& criteria,
                     const QVariantList& params, std::optional<int> index)
{
    Transaction tx(store);
    QVariant value = tx.lookupValue(table, column, criteria, params, index);
    tx.commit();
    return value;
}

bool execute(Store& store, const QString& sql, const QVariantList& params)
{
    Transaction tx(store);
    tx.execute(sql, params);
    return tx.commit().ok();
}

Rows query(Store& store, const QString& sql, const QVariantList& params)
{
    Transaction tx(store);
    Rows rows = tx.query(sql, params);
    tx.commit();
    return rows;
}

Rows rows(Store& store, const QString& table)
{
    Transaction tx(store);
    Rows rows = tx.rows(table);
    tx.commit();
    return rows;
}

bool opens(Store& store)
{
    return Transaction(store).commit().ok();
}

} // namespace store
