#pragma once

#include <QString>

#include <cstdint>

namespace benchmark {
class State;
}

namespace bench {

// What a durable save of `bytes` bytes costs at least on this machine: the
// same number of bytes written to a new file in `folder`, fsync, rename over
// the last such file, fsync of the folder. The median of several writes,
// measured once per size in the running program, so under the same load as
// the handlers it is compared with.
double physicalLimitSeconds(const QString& folder, std::int64_t bytes);

// Adds two counters to a handler's benchmark: limit_ms, the physical limit
// for the data file as it is now, and x_limit, the handler's real time per
// iteration divided by it (the benchmark must measure real time).
void reportAgainstLimit(benchmark::State& state, const QString& folder);

} // namespace bench
