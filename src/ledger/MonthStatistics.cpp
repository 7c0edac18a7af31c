#include "MonthStatistics.h"

#include "store/Transaction.h"

namespace ledger {

namespace {

// Dates are kept as "yyyy-MM-dd[ HH:mm:ss]" texts, so a month is the range
// from its first day up to the first day of the next month.
store::Amount sumOverMonth(store::Transaction& tx, const QString& table, const QString& column, QDate first)
{
    const QString sql = QStringLiteral("SELECT SUM(%1) FROM %2 WHERE F1 >= ? AND F1 < ?").arg(column, table);
    const store::Rows rows = tx.query(sql, {first, first.addMonths(1)});
    return rows.empty() ? store::Amount() : rows.front().amount(0);
}

} // namespace

MonthFigures MonthStatistics::forMonth(store::Transaction& tx, int year, int month)
{
    const QDate first(year, month, 1);
    MonthFigures figures;
    figures.income = sumOverMonth(tx, QStringLiteral("Bank"), QStringLiteral("F2"), first);
    figures.expenses = sumOverMonth(tx, QStringLiteral("Bills"), QStringLiteral("F3"), first);
    return figures;
}

std::optional<MonthStatistics> MonthStatistics::read(store::Store& store, QDate today)
{
    const QDate previous = QDate(today.year(), today.month(), 1).addMonths(-1);
    store::Transaction tx(store);
    MonthStatistics statistics;
    statistics.current = forMonth(tx, today.year(), today.month());
    statistics.previous = forMonth(tx, previous.year(), previous.month());
    if (!tx.commit())
        return std::nullopt;
    return statistics;
}

} // namespace ledger
