#pragma once

#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "store/Store.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace velmora::test {

// A program folder holding a data file made by a DataBuilder, and a store on
// it that records what it reports.
class ServiceData
{
public:
    explicit ServiceData(const DataBuilder& data = DataBuilder());

    store::Store& store() { return *m_store; }
    const ProgramFolder& folder() const { return m_folder; }
    QString backupPath() const;
    // Every row of `table` as "v1|v2|…", values as the store returns them.
    QStringList rows(const QString& table);
    // One value by an SQL condition, "" for no row or Null.
    QString value(const QString& table, const QString& column, const QString& criteria);
    // A Currency value as "12.35"; "0" for no row or Null.
    QString amount(const QString& table, const QString& column, const QString& criteria);

    RecordingSink sink;

private:
    ProgramFolder m_folder;
    std::unique_ptr<store::Store> m_store;
};

} // namespace velmora::test
