#pragma once

#include "CommandLine.h"

#include <ostream>

namespace velmora::tool {

// tables FILE: the user tables, one per line.
int runTables(const CommandLine& line, std::ostream& out);
// export FILE TABLE: the table as CSV.
int runExport(const CommandLine& line, std::ostream& out);

} // namespace velmora::tool
