#include "DetailTable.h"

#include "AnalyticsTexts.h"
#include "store/CatalogueEntry.h"
#include "store/Transaction.h"

#include <QDateTime>

namespace analytics {

namespace {

constexpr char kMonthIncome[] = "SELECT F1, F2, F3, F0 FROM Bank WHERE F1 >= ? AND F1 < ? "
                                "ORDER BY F1 DESC, F0 DESC";
// The purse's name is Null only for a purse no longer in the catalogue; a
// purse listed twice still gives one line, named as its last entry.
constexpr char kMonthExpenses[] =
    "SELECT Bills.F1, Bills.F3, Bills.F4, "
    "(SELECT coalesce(Purse_Dict.F1, '') FROM Purse_Dict WHERE Purse_Dict.F0 = Bills.F6 "
    "ORDER BY Purse_Dict.rowid DESC LIMIT 1), "
    "Bills.F0, Bills.F5 FROM Bills "
    "WHERE Bills.F1 >= ? AND Bills.F1 < ? AND Bills.F2 = ? ORDER BY Bills.F1 DESC, Bills.F0 DESC";

QString displayedDate(const QVariant& stored)
{
    const QString text = stored.toString();
    if (text.size() > 10) {
        const QDateTime when = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        if (when.isValid())
            return when.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"));
    }
    const QDate day = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
    return day.isValid() ? day.toString(QStringLiteral("dd.MM.yyyy")) : text;
}

QString kept(const QVariant& text)
{
    return text.toString().left(DetailTable::kTextLength);
}

std::optional<store::Amount> amountOf(const QVariant& stored)
{
    return stored.isValid() ? std::optional(store::Amount::fromStored(stored)) : std::nullopt;
}

QString shown(const std::optional<store::Amount>& amount)
{
    return amount ? amount->toDisplayString() : QString();
}

} // namespace

QString DetailTable::caption() const
{
    return QString::fromUtf8(kind == DetailKind::Income ? texts::incomeCaption : texts::expenseCaption);
}

QStringList DetailTable::headers() const
{
    using namespace texts;
    if (kind == DetailKind::Income)
        return {dateColumn, amountColumn, commentColumn, numberColumn};
    return {dateColumn, amountColumn, commentColumn, purseColumn, numberColumn, noteColumn};
}

QStringList DetailTable::cells(const DetailRow& row) const
{
    const QString number = QString::number(row.number);
    if (kind == DetailKind::Income)
        return {row.date, shown(row.amount), row.comment, number};
    return {row.date, shown(row.amount), row.comment, row.purse, number, row.note};
}

store::WideAmount DetailTable::total() const
{
    store::WideAmount sum;
    for (const DetailRow& row : rows)
        if (row.amount)
            sum += *row.amount;
    return sum;
}

DetailTable DetailTable::income(store::Transaction& tx, const Period& period)
{
    DetailTable table;
    table.kind = DetailKind::Income;
    for (const store::Row& r : tx.query(QString::fromUtf8(kMonthIncome), period.monthRange()))
        table.rows.push_back(
            {displayedDate(r.value(0)), amountOf(r.value(1)), kept(r.value(2)), {}, r.integer(3), {}});
    return table;
}

DetailTable DetailTable::expenses(store::Transaction& tx, const Period& period, const QString& accountEntry)
{
    DetailTable table;
    table.kind = DetailKind::Expenses;
    const auto code = store::CatalogueEntry::codeOf(accountEntry);
    if (!code)
        return table;
    for (const store::Row& r : tx.query(QString::fromUtf8(kMonthExpenses), period.monthRange() << *code))
        table.rows.push_back(
            {displayedDate(r.value(0)), amountOf(r.value(1)), kept(r.value(2)),
             r.value(3).isValid() ? kept(r.value(3)) : QString::fromUtf8(texts::deletedPurse), r.integer(4),
             kept(r.value(5))});
    return table;
}

} // namespace analytics
