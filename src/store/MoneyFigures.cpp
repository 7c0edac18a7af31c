#include "MoneyFigures.h"

#include "Dates.h"
#include "MoneyRows.h"
#include "StoreTexts.h"
#include "Transaction.h"

namespace store {

namespace {

bool noFurtherOut(WideAmount after, WideAmount before)
{
    return after.excess() <= before.excess();
}

WideAmount sumOverMonth(QuerySource& source, const QString& table, const QString& column, QDate day)
{
    const QString sql =
        QStringLiteral("SELECT WideSum(%1) FROM %2 WHERE F1 >= ? AND F1 < ?").arg(column, table);
    const Rows rows = source.query(sql, storedMonthRange(day.year(), day.month()));
    return rows.empty() ? WideAmount() : rows.front().wide(0);
}

} // namespace

MonthFigures MonthFigures::of(QuerySource& source, QDate day)
{
    MonthFigures figures;
    figures.income = sumOverMonth(source, QStringLiteral("Bank"), QStringLiteral("F2"), day);
    figures.expenses = sumOverMonth(source, QStringLiteral("Bills"), QStringLiteral("F3"), day);
    return figures;
}

MoneyFigures MoneyFigures::read(QuerySource& source, std::vector<QDate> monthDays)
{
    MoneyFigures figures;
    figures.purseTotal = money::purseTotal(source);
    figures.bank = WideAmount(money::storedBalance(source)) - figures.purseTotal;
    for (const QDate& day : monthDays)
        figures.months.push_back(MonthFigures::of(source, day));
    figures.monthDays = std::move(monthDays);
    return figures;
}

std::vector<QDate> MoneyFigures::shownMonths(QDate today)
{
    // A month earlier the day may be shorter: addMonths() keeps it in that month.
    return {today, today.addMonths(-1)};
}

bool MoneyFigures::keepsInRange(const MoneyFigures& before) const
{
    if (!noFurtherOut(purseTotal, before.purseTotal) || !noFurtherOut(bank, before.bank))
        return false;
    for (std::size_t i = 0; i < months.size(); ++i) {
        const MonthFigures earlier = i < before.months.size() ? before.months[i] : MonthFigures();
        if (!noFurtherOut(months[i].income, earlier.income) ||
            !noFurtherOut(months[i].expenses, earlier.expenses))
            return false;
    }
    return true;
}

Outcome MoneyFigures::outOfRange()
{
    return Outcome::refused(QString::fromUtf8(texts::amountOutOfRange));
}

Outcome MoneyFigures::commitInRange(Transaction& tx, const MoneyFigures& before,
                                    const std::function<void()>& beforeSave)
{
    if (tx.ok()) {
        const MoneyFigures after = read(tx, before.monthDays);
        if (tx.ok() && !after.keepsInRange(before))
            return outOfRange();
    }
    if (tx.ok() && beforeSave)
        beforeSave();
    return Outcome::committed(tx.commit());
}

} // namespace store
