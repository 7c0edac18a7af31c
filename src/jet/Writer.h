#pragma once

#include "Database.h"

#include <cstdint>
#include <vector>

namespace jet {

// Encodes the database as a complete Jet 4 file with its password. Throws
// jet::Error when a value does not fit its column (a text longer than the
// column, a row over the page limit, a value of the wrong kind).
std::vector<std::uint8_t> encodeDatabase(const Database& db);

} // namespace jet
