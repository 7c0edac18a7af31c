#pragma once

#include "SampleData.h"

#include <string>

namespace velmora::test {

// Recomputes the money of a sample data file from its rows and the purse
// transfers the generator reports, day by day. Empty when everything holds;
// otherwise what is wrong first.
std::string moneyProblems(const jet::Database& db, const std::vector<PurseTransfer>& transfers);

// Checks of shape that hold for every sample: operation counts, codes that
// point into the catalogues, dates inside the history and in operation order.
std::string shapeProblems(const jet::Database& db, const SampleOptions& options);

} // namespace velmora::test
