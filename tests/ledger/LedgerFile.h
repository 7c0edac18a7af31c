#pragma once

#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include "store/Store.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <string>

namespace velmora::test {

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
    // One value by an SQL condition, "" for no row or Null.
    QString value(const QString& table, const QString& column, const QString& criteria);
    // A Currency value as "12.35"; "0" for no row or Null.
    QString amount(const QString& table, const QString& column, const QString& criteria);
    // The amount of a one-value query, as "12.35"; "null" for no row or Null.
    std::string money(const QString& sql, const QVariantList& params = {});
    std::string balance() { return money("SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'"); }
    std::string purse(int code) { return money("SELECT F1 FROM Purse WHERE F0 = ?", {code}); }

    RecordingSink sink;

private:
    ProgramFolder m_folder;
    std::unique_ptr<store::Store> m_store;
};

// An amount as the user types it ("12,345").
inline store::Amount typed(const char* text)
{
    return *store::Amount::parse(QString::fromUtf8(text));
}

} // namespace velmora::test
