#pragma once

#include "Amount.h"
#include "QuerySource.h"
#include "RowView.h"
#include "StoreResult.h"

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <optional>

namespace store {

class Store;

// One handler's work on the data file. The outermost Transaction opens the
// store (lock, fresh data) and begins an SQLite transaction; Transactions
// created while it lives share it. commit() of the outermost one writes the
// file once, if anything changed; leaving it without commit() rolls back.
//
// Failures do not throw: a failed statement shows its "Error number" box
// through the store's ErrorSink and stops the handler's writes (later
// execute() calls do nothing and return false); a data file that cannot be
// opened or saved is reported once. commit() then returns the failure and
// neither memory nor file change.
class Transaction : public QuerySource
{
public:
    explicit Transaction(Store& store);
    // Without commit(): the outermost rolls back; an inner one that changed
    // rows makes the whole transaction roll back.
    ~Transaction() override;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // True while nothing has failed.
    bool ok() const;

    // One statement with its values bound to the ? in it; false when it failed.
    bool execute(const QString& sql, const QVariantList& params = {});
    bool executeStatement(const QString& sql, const QVariantList& params = {})
    {
        return execute(sql, params);
    }

    // Sets `column` to `value` in every row of `table` matching `criteria`
    // (an SQL condition with ? for `params`). Saving such a change reads the
    // value once, not from every row; false when it failed.
    bool assign(const QString& table, const QString& column, const QVariant& value, const QString& criteria,
                const QVariantList& params = {});

    Rows query(const QString& sql, const QVariantList& params = {}) override;
    // The same rows handed to `each` one at a time, so that a long result is
    // never held whole; false when the query failed.
    bool forEachRow(const QString& sql, const QVariantList& params, const RowHandler& each);
    // Every row of a table, in file order.
    Rows rows(const QString& table);

    // `column` of the last row of `table` matching `criteria` (an SQL
    // condition with ? for `params`; empty for every row); an invalid QVariant
    // when no row matches. `index`, when given, names the same column by
    // number (0 to 7 for F0 to F7); another number gives an invalid QVariant.
    QVariant lookupValue(const QString& table, const QString& column, const QString& criteria,
                         const QVariantList& params = {}, std::optional<int> index = std::nullopt);
    // A Currency lookup; 0 when no row matches or the value is Null.
    Amount lookupAmount(const QString& table, const QString& column, const QString& criteria,
                        const QVariantList& params = {});

    // Ends the transaction. Only the outermost one saves; an inner one reports
    // whether everything so far succeeded. Call at most once.
    StoreResult commit();

private:
    Store& m_store;
    long long m_changesAtStart;
    bool m_finished = false;
};

} // namespace store
