// Decoding and encoding whole sample data files of growing size, and decoding
// compared with mdb-export reading the two big tables of the same file.
#include "SampleData.h"

#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/Schema.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

// About `operations` bank and expense rows over ten years.
velmora::SampleOptions optionsFor(std::int64_t operations)
{
    velmora::SampleOptions options;
    options.years = 10;
    options.opsPerMonth = static_cast<int>(operations / 120);
    options.seed = 2031;
    options.lastDay = std::chrono::sys_days{std::chrono::year{2025} / 6 / 30};
    return options;
}

const jet::Database& sampleDatabase(std::int64_t operations)
{
    static std::map<std::int64_t, jet::Database> cache;
    auto found = cache.find(operations);
    if (found == cache.end())
        found = cache.emplace(operations, velmora::makeSampleDatabase(optionsFor(operations))).first;
    return found->second;
}

const std::vector<std::uint8_t>& sampleFile(std::int64_t operations)
{
    static std::map<std::int64_t, std::vector<std::uint8_t>> cache;
    auto found = cache.find(operations);
    if (found == cache.end())
        found = cache.emplace(operations, jet::encodeDatabase(sampleDatabase(operations))).first;
    return found->second;
}

// The sample file on disk for the external reader, removed at exit.
class SampleFileOnDisk
{
public:
    explicit SampleFileOnDisk(std::int64_t operations)
    {
        char name[] = "/tmp/velmora-bench-XXXXXX";
        const int fd = mkstemp(name);
        if (fd < 0)
            throw std::runtime_error("cannot create a temporary file");
        ::close(fd);
        m_path = name;
        const auto& bytes = sampleFile(operations);
        std::ofstream(m_path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    ~SampleFileOnDisk() { std::remove(m_path.c_str()); }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

// Runs mdb-export FILE TABLE with its output going to /dev/null.
void mdbExport(const std::string& file, const char* table)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char* argv[] = {const_cast<char*>("mdb-export"), const_cast<char*>(file.c_str()),
                    const_cast<char*>(table), nullptr};
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (spawned != 0 || waitpid(pid, &status, 0) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("mdb-export failed");
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void addRowCounters(benchmark::State& state, const jet::Database& db)
{
    std::size_t rows = 0;
    for (const jet::Table& table : db.tables)
        rows += table.rows.size();
    state.counters["rows"] = static_cast<double>(rows);
    state.counters["rows/s"] =
        benchmark::Counter(static_cast<double>(rows), benchmark::Counter::kIsIterationInvariantRate);
}

void decodeSample(benchmark::State& state)
{
    const auto& bytes = sampleFile(state.range(0));
    for (auto _ : state) {
        jet::Database db = jet::readDatabase(bytes, store::kFilePassword);
        benchmark::DoNotOptimize(db);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
    addRowCounters(state, sampleDatabase(state.range(0)));
}

void encodeSample(benchmark::State& state)
{
    const jet::Database& db = sampleDatabase(state.range(0));
    std::size_t size = 0;
    for (auto _ : state) {
        std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
        size = bytes.size();
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
    addRowCounters(state, db);
}

// The time is mdb-export's, child processes included; our decode of the same
// file is timed alongside and reported as a counter with the ratio.
void decodeVersusMdbExport(benchmark::State& state)
{
    const SampleFileOnDisk file(state.range(0));
    const auto& bytes = sampleFile(state.range(0));
    double external = 0, ours = 0;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        mdbExport(file.path(), "Bank");
        mdbExport(file.path(), "Bills");
        const double elapsed = secondsSince(start);
        state.SetIterationTime(elapsed);
        external += elapsed;
        start = std::chrono::steady_clock::now();
        jet::Database db = jet::readDatabase(bytes, store::kFilePassword);
        benchmark::DoNotOptimize(db);
        ours += secondsSince(start);
    }
    const auto n = static_cast<double>(state.iterations());
    state.counters["mdb_export_ms"] = external / n * 1000;
    state.counters["our_decode_ms"] = ours / n * 1000;
    state.counters["mdb_export/decode"] = external / ours;
}

} // namespace

BENCHMARK(decodeSample)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeSample)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeVersusMdbExport)->Arg(100'000)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
