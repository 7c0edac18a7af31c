#pragma once

#include "jet/Database.h"

#include <QDate>
#include <QDateTime>
#include <QString>

namespace velmora::test {

// A Velmora data file made row by row: the prepared file plus what a test
// needs. Amounts are typed as the user types them ("1234,5", "-12.34").
class DataBuilder
{
public:
    DataBuilder();

    DataBuilder& password(const QString& password);
    // Sets the stored balance (Tech OSTATOK); adds another OSTATOK row when `extraRow`.
    DataBuilder& balance(const QString& amount, bool extraRow = false);
    DataBuilder& withoutBalanceRow();
    DataBuilder& account(int code, const QString& name);
    DataBuilder& purse(int code, const QString& name, const QString& amount);
    // A purse with an entry in the catalogue but no row of money.
    DataBuilder& purseWithoutMoney(int code, const QString& name);
    DataBuilder& bank(const QDateTime& when, const QString& amount, const QString& comment = {});
    DataBuilder& bank(QDate day, const QString& amount, const QString& comment = {});
    DataBuilder& bill(QDate day, int account, const QString& amount, int purse = 1);
    DataBuilder& billAt(const QDateTime& when, int account, const QString& amount, int purse = 1);
    // A bank row without a date.
    DataBuilder& undatedBank(const QString& amount);

    const jet::Database& database() const { return m_db; }
    jet::Database& database() { return m_db; }

private:
    jet::Table& table(const char16_t* name);

    jet::Database m_db;
};

// Currency units of a typed amount; throws std::invalid_argument when it is not one.
std::int64_t unitsOf(const QString& amount);

} // namespace velmora::test
