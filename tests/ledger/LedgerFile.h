#pragma once

#include "ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include "jet/Database.h"
#include "store/Store.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>

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
    DataBuilder& bank(QDate day, const QString& amount, const QString& comment = {})
    {
        return bank(QDateTime(day, QTime(0, 0)), amount, comment);
    }
    DataBuilder& bill(QDate day, int account, const QString& amount, int purse = 1)
    {
        return billAt(QDateTime(day, QTime(0, 0)), account, amount, purse);
    }
    DataBuilder& billAt(const QDateTime& when, int account, const QString& amount, int purse = 1);
    // Gives the last expense its name and note.
    DataBuilder& named(const QString& name, const QString& note = {});
    // A bank row without a date.
    DataBuilder& undatedBank(const QString& amount);

    const jet::Database& database() const { return m_db; }
    jet::Database& database() { return m_db; }

private:
    jet::Table& table(const char16_t* name);

    jet::Database m_db;
};

// A data file made with DataBuilder in its own program folder, a store on it
// that records what it reports, and what the file holds read back.
class LedgerFile
{
public:
    explicit LedgerFile(const DataBuilder& data = DataBuilder());

    store::Store& store() { return *m_store; }
    const ProgramFolder& folder() const { return m_folder; }
    QString backupPath() const;

    // Every row of `table` as "v1|v2|…", values as the store returns them.
    QStringList rows(const QString& table);
    int count(const QString& table) { return static_cast<int>(rows(table).size()); }
    // The amount of a one-value query, as "12.35"; "null" for no row or Null.
    std::string money(const QString& sql, const QVariantList& params = {});
    std::string balance() { return money("SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'"); }
    std::string purse(int code) { return money("SELECT F1 FROM Purse WHERE F0 = ?", {code}); }

    RecordingSink sink;

private:
    ProgramFolder m_folder;
    std::unique_ptr<store::Store> m_store;
};

// The rows of one table as our Jet reader decodes them from the data file in
// `programDir`, one text per row: values joined by " | ", money as "12.35",
// dates as yyyy-MM-dd, Null as "NULL". Throws when the file cannot be read.
QStringList fileRows(const QString& programDir, const QString& table);

// An amount as the user types it ("12,345").
inline store::Amount typed(const char* text)
{
    return *store::Amount::parse(QString::fromUtf8(text));
}

} // namespace velmora::test
