#pragma once

#include <cstdint>
#include <random>
#include <span>

namespace velmora::sample {

// Random choices that come out the same on every platform for one seed: the
// engine's output is fixed by the standard, the mapping to ranges is our own.
class SampleRandom
{
public:
    explicit SampleRandom(std::uint64_t seed) : m_engine(seed) {}

    // Uniform in [low, high].
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        const auto span = static_cast<std::uint64_t>(high - low) + 1;
        return low + static_cast<std::int64_t>(m_engine() % span);
    }

    bool chance(int percent) { return between(0, 99) < percent; }

    template <typename T> const T& pick(std::span<const T> items)
    {
        return items[between(0, items.size() - 1)];
    }

    // An index chosen with the weight that `weightOf` gives each item.
    template <typename T, typename WeightOf> std::size_t weighted(std::span<const T> items, WeightOf weightOf)
    {
        std::int64_t total = 0;
        for (const T& item : items)
            total += weightOf(item);
        std::int64_t target = between(0, total - 1);
        for (std::size_t i = 0; i < items.size(); ++i) {
            target -= weightOf(items[i]);
            if (target < 0)
                return i;
        }
        return items.size() - 1;
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace velmora::sample
