#include "AccountCatalogue.h"

#include "ServiceTexts.h"

#include "store/CatalogueEntry.h"
#include "store/Copies.h"
#include "store/NextCode.h"
#include "store/TextLimit.h"
#include "store/Transaction.h"

namespace service {

std::optional<QStringList> AccountCatalogue::entries()
{
    store::Transaction tx(m_store);
    const QStringList list = store::CatalogueEntry::listOf(tx, QStringLiteral("Bills_Dict"));
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

store::Outcome AccountCatalogue::rename(int code, const QString& name)
{
    if (auto refused = store::refuseTooLong({{"Bills_Dict", "F1", name}}))
        return *refused;
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("DELETE FROM Bills_Dict WHERE F0 = ?"), {code});
    tx.execute(QStringLiteral("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)"), {code, name});
    return store::Outcome::committed(tx.commit());
}

store::Outcome AccountCatalogue::remove(int code)
{
    store::Transaction tx(m_store);
    const store::Rows used = tx.query(QStringLiteral("SELECT COUNT(*) FROM Bills WHERE F2 = ?"), {code});
    const qlonglong expenses = used.empty() ? 0 : used.front().integer(0);
    if (tx.ok() && expenses > 0)
        return store::Outcome::refused(QString::fromUtf8(texts::accountInUse).arg(expenses));
    if (!store::Copies(m_store).before(store::CopyReason::AccountDeletion))
        return store::Outcome::notSaved();
    tx.execute(QStringLiteral("DELETE FROM Bills_Dict WHERE F0 = ?"), {code});
    return store::Outcome::committed(tx.commit());
}

store::Result<int> AccountCatalogue::add(const QString& name)
{
    if (auto refused = store::refuseTooLong({{"Bills_Dict", "F1", name}}))
        return *refused;
    store::Transaction tx(m_store);
    const qlonglong code = store::nextCode(tx, {{QStringLiteral("Bills_Dict"), QStringLiteral("F0")},
                                                {QStringLiteral("Bills"), QStringLiteral("F2")}});
    tx.execute(QStringLiteral("INSERT INTO Bills_Dict (F0, F1) VALUES (?, ?)"), {code, name});
    if (!tx.commit())
        return store::Outcome::notSaved();
    return static_cast<int>(code);
}

} // namespace service
