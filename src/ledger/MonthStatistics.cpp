#include "MonthStatistics.h"

#include "store/Transaction.h"

namespace ledger {

namespace {

// Dates are kept as "yyyy-MM-dd[ HH:mm:ss]" texts, so a month is the range
// from its first day up to the first day of the next month.
store::WideAmount sumOverMonth(store::QuerySource& source, const QString& table, const QString& column,
                               QDate first)
{
    const QString sql =
        QStringLiteral("SELECT WideSum(%1) FROM %2 WHERE F1 >= ? AND F1 < ?").arg(column, table);
    const store::Rows rows = source.query(sql, {first, first.addMonths(1)});
    return rows.empty() ? store::WideAmount() : rows.front().wide(0);
}

} // namespace

MonthFigures MonthStatistics::forMonth(store::QuerySource& source, QDate day)
{
    const QDate first(day.year(), day.month(), 1);
    MonthFigures figures;
    figures.income = sumOverMonth(source, QStringLiteral("Bank"), QStringLiteral("F2"), first);
    figures.expenses = sumOverMonth(source, QStringLiteral("Bills"), QStringLiteral("F3"), first);
    return figures;
}

std::vector<QDate> MonthStatistics::shownMonths(QDate today)
{
    // A month earlier the day may be shorter: addMonths() keeps it in that month.
    return {today, today.addMonths(-1)};
}

std::optional<MonthStatistics> MonthStatistics::read(store::Store& store, QDate today)
{
    const std::vector<QDate> months = shownMonths(today);
    store::Transaction tx(store);
    MonthStatistics statistics;
    statistics.current = forMonth(tx, months[0]);
    statistics.previous = forMonth(tx, months[1]);
    if (!tx.commit())
        return std::nullopt;
    return statistics;
}

} // namespace ledger
