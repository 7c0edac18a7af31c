#pragma once

#include <QString>
#include <QTemporaryDir>

namespace benchmark::internal {
class Benchmark;
}
namespace store {
class Store;
}

namespace bench {

// A temporary program folder holding velmora.mdb with a sample household
// history of ten years ending 2026-03-31; removed when the program ends. The
// history is made in a child process, so that the benchmark's own peak
// memory is what the program under test used.
class SampleFolder
{
public:
    explicit SampleFolder(int operations);
    QString dir() const { return m_dir.path(); }
    QString dataFile() const { return m_dir.filePath(QStringLiteral("velmora.mdb")); }

private:
    QTemporaryDir m_dir;
};

// One folder per size, made on first use.
const SampleFolder& sampleFolder(int operations);

// A store that has read the folder's file, one per size.
store::Store& sampleStore(int operations);

// The household sizes every handler is measured at: 10,000 and 100,000
// operations, and 1,000,000 when VELMORA_BENCH_1M is set (each 1M run makes
// and reads a file of about 60 MB, so they are left out by default).
void householdSizes(benchmark::internal::Benchmark* b);
// The same sizes for benchmarks that take one more argument, given as `more`.
void householdSizesWith(benchmark::internal::Benchmark* b, std::initializer_list<long> more);

} // namespace bench
