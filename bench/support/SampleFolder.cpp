#include "SampleFolder.h"

#include "SampleData.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>

namespace bench {

SampleFolder::SampleFolder(int operations)
{
    if (!m_dir.isValid())
        throw std::runtime_error("cannot create a temporary folder");
    velmora::SampleOptions options;
    options.years = 10;
    options.opsPerMonth = operations / 120;
    options.seed = 2031;
    options.lastDay = std::chrono::sys_days{std::chrono::year{2026} / 3 / 31};
    store::writeFileAtomically((m_dir.path() + "/velmora.mdb").toStdString(),
                               jet::encodeDatabase(velmora::makeSampleDatabase(options)));
}

const SampleFolder& sampleFolder(int operations)
{
    static std::map<int, std::unique_ptr<SampleFolder>> folders;
    auto& slot = folders[operations];
    if (!slot)
        slot = std::make_unique<SampleFolder>(operations);
    return *slot;
}

store::Store& sampleStore(int operations)
{
    static std::map<int, std::unique_ptr<store::Store>> stores;
    auto& slot = stores[operations];
    if (!slot) {
        slot = std::make_unique<store::Store>(sampleFolder(operations).dir());
        store::Transaction(*slot).commit();
    }
    return *slot;
}

} // namespace bench
