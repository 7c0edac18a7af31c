#include "AccountCatalogue.h"

#include "store/CatalogueEntry.h"
#include "store/Transaction.h"

namespace service {

std::optional<QStringList> AccountCatalogue::entries()
{
    store::Transaction tx(m_store);
    QStringList list;
    for (const store::Row& row : tx.query(QStringLiteral("SELECT F0, F1 FROM Bills_Dict ORDER BY F0")))
        list.append(store::CatalogueEntry::format(row.value(0), row.value(1)));
    if (!tx.commit())
        return std::nullopt;
    return list;
}

std::optional<QString> AccountCatalogue::name(int code)
{
    store::Transaction tx(m_store);
    const QVariant value = tx.lookupValue(QStringLiteral("Bills_Dict"), QStringLiteral("F1"),
                                          QStringLiteral("F0 = ?"), {code}, 1);
    if (!tx.commit())
        return std::nullopt;
    return value.toString();
}

store::StoreResult AccountCatalogue::rename(int code, const QString& name)
{
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("DELETE FROM Bills_Dict WHERE F0 = ?"), {code});
    tx.execute(QStringLiteral("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)"), {code, name});
    return tx.commit();
}

store::StoreResult AccountCatalogue::remove(int code)
{
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("DELETE FROM Bills_Dict WHERE F0 = ?"), {code});
    return tx.commit();
}

std::optional<int> AccountCatalogue::add(const QString& name)
{
    // The code is taken in the same transaction as the insert, so two
    // programs adding at once cannot get the same one.
    store::Transaction tx(m_store);
    const store::Rows rows = tx.query(QStringLiteral("SELECT MAX(F0) FROM Bills_Dict"));
    const qlonglong code = (rows.empty() ? 0 : rows.front().integer(0)) + 1;
    tx.execute(QStringLiteral("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)"), {code, name});
    if (!tx.commit())
        return std::nullopt;
    return static_cast<int>(code);
}

} // namespace service
