#include "Transaction.h"

#include "SqlSchema.h"
#include "Store.h"

#include <stdexcept>

namespace store {

namespace {

QString quoted(const QString& identifier)
{
    return QString::fromStdString(sql::quoteIdentifier(identifier.toStdString()));
}

} // namespace

Transaction::Transaction(Store& store) : m_store(store), m_changesAtStart(0)
{
    m_store.enter();
    m_changesAtStart = m_store.changeCount();
}

Transaction::~Transaction()
{
    if (!m_finished)
        m_store.leave(false, m_changesAtStart);
}

bool Transaction::ok() const
{
    return m_store.isOpen() && !m_store.hasFailed();
}

bool Transaction::execute(const QString& sql, const QVariantList& params)
{
    return m_store.runStatement(sql, params);
}

bool Transaction::assign(const QString& table, const QString& column, const QVariant& value,
                         const QString& criteria, const QVariantList& params)
{
    return m_store.runStatement(QStringLiteral("UPDATE ") + quoted(table) + QStringLiteral(" SET ") +
                                    quoted(column) + QStringLiteral(" = ? WHERE ") + criteria,
                                QVariantList{value} + params, true);
}

Rows Transaction::query(const QString& sql, const QVariantList& params)
{
    return m_store.runQuery(sql, params);
}

bool Transaction::forEachRow(const QString& sql, const QVariantList& params, const RowHandler& each)
{
    return m_store.runQuery(sql, params, each);
}

Rows Transaction::rows(const QString& table)
{
    return m_store.runQuery(
        QStringLiteral("SELECT * FROM ") + quoted(table) + QStringLiteral(" ORDER BY rowid"), {});
}

QVariant Transaction::lookupValue(const QString& table, const QString& column, const QString& criteria,
                                  const QVariantList& params, std::optional<int> index)
{
    if (index) {
        if (*index < 0 || *index > 7)
            return QVariant();
        if (column.compare(QStringLiteral("F%1").arg(*index), Qt::CaseInsensitive) != 0)
            throw std::invalid_argument("lookupValue: the index names another column than " +
                                        column.toStdString());
    }
    QString sql = QStringLiteral("SELECT ") + quoted(column) + QStringLiteral(" FROM ") + quoted(table);
    if (!criteria.isEmpty())
        sql += QStringLiteral(" WHERE ") + criteria;
    const Rows rows = m_store.runQuery(sql, params);
    return rows.empty() ? QVariant() : rows.back().value(0);
}

Amount Transaction::lookupAmount(const QString& table, const QString& column, const QString& criteria,
                                 const QVariantList& params)
{
    return Amount::fromStored(lookupValue(table, column, criteria, params));
}

StoreResult Transaction::commit()
{
    if (m_finished)
        throw std::logic_error("Transaction::commit called twice");
    m_finished = true;
    return m_store.leave(true, m_changesAtStart);
}

} // namespace store
