#include "Password.h"

#include "store/TextLimit.h"
#include "store/Transaction.h"

namespace service {

namespace {

const QString kDeleteRow = QStringLiteral("DELETE FROM Tech WHERE F0 = 'PW'");

} // namespace

std::optional<QString> Password::current()
{
    store::Transaction tx(m_store);
    const QVariant value =
        tx.lookupValue(QStringLiteral("Tech"), QStringLiteral("F1"), QStringLiteral("F0 = 'PW'"), {}, 1);
    if (!tx.commit())
        return std::nullopt;
    return value.toString();
}

store::Outcome Password::set(const QString& password)
{
    if (auto refused = store::refuseTooLong({{"Tech", "F1", password}}))
        return *refused;
    store::Transaction tx(m_store);
    tx.execute(kDeleteRow);
    tx.execute(QStringLiteral("INSERT INTO Tech (F0, F1) VALUES ('PW', ?)"), {password});
    return store::Outcome::committed(tx.commit());
}

store::Outcome Password::remove()
{
    store::Transaction tx(m_store);
    tx.execute(kDeleteRow);
    return store::Outcome::committed(tx.commit());
}

} // namespace service
