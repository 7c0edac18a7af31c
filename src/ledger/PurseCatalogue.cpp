#include "PurseCatalogue.h"

#include "store/Copies.h"
#include "store/MoneyFigures.h"
#include "store/MoneyRows.h"
#include "store/NextCode.h"
#include "store/TextLimit.h"
#include "store/Transaction.h"

namespace ledger {

std::optional<PurseCard> PurseCatalogue::open(int code)
{
    store::Transaction tx(m_store);
    PurseCard card;
    const QString byCode = QStringLiteral("F0 = ?");
    card.name = tx.lookupValue(QStringLiteral("Purse_Dict"), QStringLiteral("F1"), byCode, {code}).toString();
    card.note = tx.lookupValue(QStringLiteral("Purse_Dict"), QStringLiteral("F3"), byCode, {code}).toString();
    card.balance = store::money::purseBalance(tx, code);
    if (!tx.commit())
        return std::nullopt;
    return card;
}

store::Outcome PurseCatalogue::rename(int code, const QString& name, const QString& note)
{
    if (auto refused = store::refuseTooLong({{"Purse_Dict", "F1", name}, {"Purse_Dict", "F3", note}}))
        return *refused;
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("DELETE FROM Purse_Dict WHERE F0 = ?"), {code});
    tx.execute(QStringLiteral("INSERT INTO Purse_Dict (F0, F1, F3) VALUES (?, ?, ?)"), {code, name, note});
    return store::Outcome::committed(tx.commit());
}

store::Outcome PurseCatalogue::remove(int code)
{
    store::Transaction tx(m_store);
    const auto before = store::MoneyFigures::read(tx);
    if (!store::Copies(m_store).before(store::CopyReason::PurseDeletion))
        return store::Outcome::notSaved();
    tx.execute(QStringLiteral("DELETE FROM Purse_Dict WHERE F0 = ?"), {code});
    store::money::removePurseBalance(tx, code);
    return store::MoneyFigures::commitInRange(tx, before);
}

store::Result<int> PurseCatalogue::create(const QString& name)
{
    if (auto refused = store::refuseTooLong({{"Purse_Dict", "F1", name}}))
        return *refused;
    store::Transaction tx(m_store);
    const qlonglong code = store::nextCode(tx, {{QStringLiteral("Purse_Dict"), QStringLiteral("F0")},
                                                {QStringLiteral("Purse"), QStringLiteral("F0")},
                                                {QStringLiteral("Bills"), QStringLiteral("F6")}});
    tx.execute(QStringLiteral("INSERT INTO Purse_Dict (F0, F1) VALUES (?, ?)"), {code, name});
    store::money::writePurseBalance(tx, static_cast<int>(code), store::Amount());
    if (!tx.commit())
        return store::Outcome::notSaved();
    return static_cast<int>(code);
}

} // namespace ledger
