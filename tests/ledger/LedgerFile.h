#pragma once

#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include "store/Store.h"

#include <QString>

#include <memory>
#include <string>

namespace velmora::test {

// A data file made with DataBuilder in its own program folder, and a store on
// it that records what it reports.
class LedgerFile
{
public:
    explicit LedgerFile(const DataBuilder& data);

    store::Store& store() { return *m_store; }
    const ProgramFolder& folder() const { return m_folder; }

    // The amount of a one-value query, as "12.35"; "null" for no row or Null.
    std::string money(const QString& sql, const QVariantList& params = {});
    std::string balance() { return money("SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'"); }
    std::string purse(int code) { return money("SELECT F1 FROM Purse WHERE F0 = ?", {code}); }
    int count(const QString& table);

    RecordingSink sink;

private:
    ProgramFolder m_folder;
    std::unique_ptr<store::Store> m_store;
};

} // namespace velmora::test
