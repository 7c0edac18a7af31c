#include "DataBuilder.h"

#include "store/Amount.h"
#include "store/Dates.h"
#include "store/Schema.h"

#include <stdexcept>

namespace velmora::test {

namespace {

jet::Value text(const QString& value)
{
    return value.toStdU16String();
}
jet::Value money(const QString& amount)
{
    return jet::Currency{unitsOf(amount)};
}
jet::Value code(int value)
{
    return std::int32_t{value};
}

jet::Value jetDateTime(const QDateTime& when)
{
    const double days = store::toJetDate(when.date()).days;
    return jet::DateTime{days + when.time().msecsSinceStartOfDay() / 86400000.0};
}

} // namespace

std::int64_t unitsOf(const QString& amount)
{
    const auto parsed = store::Amount::parse(amount);
    if (!parsed)
        throw std::invalid_argument("not an amount: " + amount.toStdString());
    return parsed->units();
}

DataBuilder::DataBuilder() : m_db(store::preparedDatabase(store::toJetDate(QDate(2026, 1, 1)).days)) {}

jet::Table& DataBuilder::table(const char16_t* name)
{
    return *m_db.table(name);
}

DataBuilder& DataBuilder::password(const QString& password)
{
    table(u"Tech").rows.push_back({text("PW"), text(password), jet::Null{}, jet::Null{}});
    return *this;
}

DataBuilder& DataBuilder::balance(const QString& amount, bool extraRow)
{
    auto& rows = table(u"Tech").rows;
    if (extraRow) {
        rows.push_back({text("OSTATOK"), jet::Null{}, money(amount), jet::Null{}});
        return *this;
    }
    for (jet::Row& row : rows)
        if (row[0] == text("OSTATOK"))
            row[2] = money(amount);
    return *this;
}

DataBuilder& DataBuilder::withoutBalanceRow()
{
    std::erase_if(table(u"Tech").rows, [](const jet::Row& row) { return row[0] == text("OSTATOK"); });
    return *this;
}

DataBuilder& DataBuilder::account(int number, const QString& name)
{
    table(u"Bills_Dict").rows.push_back({code(number), text(name)});
    return *this;
}

DataBuilder& DataBuilder::purse(int number, const QString& name, const QString& amount)
{
    purseWithoutMoney(number, name);
    table(u"Purse").rows.push_back({code(number), money(amount)});
    return *this;
}

DataBuilder& DataBuilder::purseWithoutMoney(int number, const QString& name)
{
    table(u"Purse_Dict").rows.push_back({code(number), text(name), jet::Null{}, jet::Null{}});
    return *this;
}

DataBuilder& DataBuilder::bank(const QDateTime& when, const QString& amount, const QString& comment)
{
    jet::Table& bank = table(u"Bank");
    bank.rows.push_back({code(++bank.lastAutoNumber), jetDateTime(when), money(amount), text(comment)});
    return *this;
}

DataBuilder& DataBuilder::bank(QDate day, const QString& amount, const QString& comment)
{
    return bank(QDateTime(day, QTime(0, 0)), amount, comment);
}

DataBuilder& DataBuilder::undatedBank(const QString& amount)
{
    jet::Table& bank = table(u"Bank");
    bank.rows.push_back({code(++bank.lastAutoNumber), jet::Null{}, money(amount), text({})});
    return *this;
}

DataBuilder& DataBuilder::bill(QDate day, int account, const QString& amount, int purse)
{
    return billAt(QDateTime(day, QTime(0, 0)), account, amount, purse);
}

DataBuilder& DataBuilder::billAt(const QDateTime& when, int account, const QString& amount, int purse)
{
    jet::Table& bills = table(u"Bills");
    bills.rows.push_back({code(++bills.lastAutoNumber), jetDateTime(when), code(account), money(amount),
                          text("покупка"), text({}), code(purse)});
    return *this;
}

} // namespace velmora::test
