#include "PhysicalLimit.h"

#include "store/AtomicFile.h"

#include <QDir>
#include <QFileInfo>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <vector>

namespace bench {

namespace {

constexpr int kWrites = 9;
// Sizes within one bucket share a measurement: a handler changes a file by a few pages.
constexpr std::int64_t kBucketBytes = 256 * 1024;

double measure(const QString& folder, std::int64_t bytes)
{
    const std::vector<std::uint8_t> data(static_cast<std::size_t>(bytes), 0x5A);
    const std::string path = QDir(folder).filePath(QStringLiteral("limit.bin")).toStdString();
    std::vector<double> seconds;
    for (int i = 0; i < kWrites; ++i) {
        const auto start = std::chrono::steady_clock::now();
        store::writeFileAtomically(path, data);
        seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::remove(path.c_str());
    std::nth_element(seconds.begin(), seconds.begin() + kWrites / 2, seconds.end());
    return seconds[kWrites / 2];
}

} // namespace

double physicalLimitSeconds(const QString& folder, std::int64_t bytes)
{
    static std::map<std::pair<QString, std::int64_t>, double> measured;
    const auto key = std::make_pair(folder, bytes / kBucketBytes);
    auto found = measured.find(key);
    if (found == measured.end())
        found = measured.emplace(key, measure(folder, bytes)).first;
    return found->second;
}

void reportAgainstLimit(benchmark::State& state, const QString& folder)
{
    const std::int64_t bytes = QFileInfo(QDir(folder).filePath(QStringLiteral("velmora.mdb"))).size();
    const double limit = physicalLimitSeconds(folder, bytes);
    state.counters["limit_ms"] = 1000 * limit;
    // Real seconds / (iterations × limit): the time of one handler in limits.
    state.counters["x_limit"] = benchmark::Counter(limit * static_cast<double>(state.iterations()),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

} // namespace bench
