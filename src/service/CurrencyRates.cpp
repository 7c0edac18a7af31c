#include "CurrencyRates.h"

#include "store/Transaction.h"

namespace service {

namespace {

constexpr int kUsdRow = 2;
constexpr int kEurRow = 3;

std::optional<store::Amount> rateOf(store::Transaction& tx, int row)
{
    const QVariant value =
        tx.lookupValue(QStringLiteral("Cur"), QStringLiteral("F1"), QStringLiteral("F0 = ?"), {row}, 1);
    if (!value.isValid())
        return std::nullopt;
    return store::Amount::fromStored(value);
}

} // namespace

std::optional<CurrencyRates::Rates> CurrencyRates::read()
{
    store::Transaction tx(m_store);
    Rates rates{rateOf(tx, kUsdRow), rateOf(tx, kEurRow)};
    if (!tx.commit())
        return std::nullopt;
    return rates;
}

store::Outcome CurrencyRates::write(store::Amount usd, store::Amount eur)
{
    const QString update = QStringLiteral("UPDATE Cur SET F1 = ? WHERE F0 = ?");
    store::Transaction tx(m_store);
    tx.execute(update, {usd.roundedToCents(), kUsdRow});
    tx.execute(update, {eur.roundedToCents(), kEurRow});
    return store::Outcome::committed(tx.commit());
}

} // namespace service
