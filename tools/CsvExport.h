#pragma once

#include "jet/Table.h"

#include <string>

namespace velmora {

// The table as CSV in the layout mdb-export prints by default (header line,
// comma separated, texts quoted), UTF-8, so that the two can be compared.
std::string exportCsv(const jet::Table& table);

} // namespace velmora
