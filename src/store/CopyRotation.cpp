#include "CopyRotation.h"

#include <algorithm>
#include <set>
#include <utility>

namespace store {

namespace fs = std::filesystem;

namespace {

constexpr int kAllKeptDays = 14;
constexpr int kMonthlyMonths = 12;

// The period whose newest copy stays: a month within the last year, else a year.
std::pair<int, int> periodOf(const QDate& made, const QDate& today)
{
    if (made >= today.addMonths(-kMonthlyMonths))
        return {made.year(), made.month()};
    return {made.year(), 0};
}

} // namespace

std::vector<fs::path> copiesToRemove(std::vector<CopyFile> copies, const QDateTime& now,
                                     std::int64_t sizeLimit)
{
    std::ranges::sort(copies, [](const CopyFile& a, const CopyFile& b) { return a.made > b.made; });
    const QDateTime allKeptSince = now.addDays(-kAllKeptDays);
    std::set<std::pair<int, int>> periodsKept;
    std::vector<fs::path> removed;
    std::vector<const CopyFile*> kept;
    for (const CopyFile& copy : copies) {
        if (copy.made >= allKeptSince || periodsKept.insert(periodOf(copy.made.date(), now.date())).second)
            kept.push_back(&copy);
        else
            removed.push_back(copy.path);
    }
    std::int64_t total = 0;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        total += kept[i]->size;
        if (i > 0 && total > sizeLimit)
            removed.push_back(kept[i]->path);
    }
    return removed;
}

} // namespace store
