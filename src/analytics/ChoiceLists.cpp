#include "ChoiceLists.h"

#include "AnalyticsTexts.h"
#include "store/CatalogueEntry.h"
#include "store/Transaction.h"

namespace analytics {

namespace {

// Null sorts first, so the undated operations' year leads the list.
QStringList bankYears(store::Transaction& tx)
{
    QStringList years;
    const store::Rows rows = tx.query(
        QStringLiteral("SELECT DISTINCT CAST(substr(F1, 1, 4) AS INTEGER) AS Yer FROM Bank ORDER BY Yer"));
    for (const store::Row& row : rows)
        years.append(row.value(0).isValid() ? QString::number(row.integer(0))
                                            : QString::fromUtf8(texts::undatedYear));
    return years;
}

} // namespace

std::optional<ChoiceLists> ChoiceLists::read(store::Store& store)
{
    store::Transaction tx(store);
    ChoiceLists lists;
    lists.accounts = store::CatalogueEntry::listOf(tx, QStringLiteral("Bills_Dict"));
    lists.months = store::CatalogueEntry::listOf(tx, QStringLiteral("Mon"));
    lists.years = bankYears(tx);
    if (!tx.commit())
        return std::nullopt;
    return lists;
}

} // namespace analytics
