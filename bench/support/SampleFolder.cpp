#include "SampleFolder.h"

#include "SampleData.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

void writeSample(const std::string& path, int operations)
{
    velmora::SampleOptions options;
    options.years = 10;
    options.opsPerMonth = operations / 120;
    options.seed = 2031;
    options.lastDay = std::chrono::sys_days{std::chrono::year{2026} / 3 / 31};
    store::writeFileAtomically(path, jet::encodeDatabase(velmora::makeSampleDatabase(options)));
}

std::vector<long> sizes()
{
    std::vector<long> result{10'000, 100'000};
    if (std::getenv("VELMORA_BENCH_1M"))
        result.push_back(1'000'000);
    return result;
}

} // namespace

SampleFolder::SampleFolder(int operations)
{
    if (!m_dir.isValid())
        throw std::runtime_error("cannot create a temporary folder");
    const std::string path = dataFile().toStdString();
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("cannot start the sample maker");
    if (child == 0) {
        try {
            writeSample(path, operations);
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("the sample file was not made");
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

void householdSizes(benchmark::internal::Benchmark* b)
{
    for (const long size : sizes())
        b->Arg(size);
    b->Unit(benchmark::kMillisecond)->UseRealTime();
}

void householdSizesWith(benchmark::internal::Benchmark* b, std::initializer_list<long> more)
{
    b->ArgsProduct({sizes(), std::vector<long>(more)})->Unit(benchmark::kMillisecond)->UseRealTime();
}

} // namespace bench
