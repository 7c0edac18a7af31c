// libFuzzer target for the store's load path: any bytes put where the data
// file lives are read, decoded with the data file's password, checked against
// the schema and loaded into SQLite, or refused with a store failure. A file
// the store accepts must then give every figure the main window shows, wide
// or not, without an engine error and without throwing.
#include "ledger/Balances.h"
#include "ledger/MonthStatistics.h"
#include "store/ErrorSink.h"
#include "store/Schema.h"
#include "store/Store.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A refused file is an answer; an engine error on an accepted one is a fault.
struct FuzzSink : store::ErrorSink
{
    void engineError(int number, const QString& description) override
    {
        std::fprintf(stderr, "engine error %d on an accepted file: %s\n", number, qPrintable(description));
        std::abort();
    }
    void storeFailure(const store::StoreError&) override {}
};

const fs::path& programDir()
{
    static const fs::path dir = [] {
        fs::path made = fs::path("/tmp") / ("velmora-store-fuzz-" + std::to_string(::getpid()));
        fs::create_directories(made);
        std::atexit([] { fs::remove_all(programDir()); });
        return made;
    }();
    return dir;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::ofstream(programDir() / store::kDataFileName, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    FuzzSink sink;
    store::Store store(QString::fromStdString(programDir().string()), &sink);
    const auto balances = ledger::Balances::read(store);
    if (!balances)
        return 0;
    const auto statistics = ledger::MonthStatistics::read(store, QDate(2026, 3, 15));
    if (!statistics)
        std::abort(); // the file was accepted a moment ago
    const QString shown = balances->purseTotal.toBalanceString() + balances->bankAmount.toBalanceString() +
                          statistics->current.income.toDisplayString() +
                          statistics->previous.expenses.toDisplayString();
    return shown.isEmpty() ? 1 : 0;
}
