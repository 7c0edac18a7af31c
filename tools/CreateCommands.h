#pragma once

#include "CommandLine.h"

namespace velmora::tool {

// new FILE: the prepared empty data file.
int runNew(const CommandLine& line);
// sample FILE --years N --ops-per-month M [--seed S] [--end YYYY-MM-DD]
int runSample(const CommandLine& line);

} // namespace velmora::tool
