#pragma once

#include "jet/Database.h"

#include <string>

namespace store {

// Empty when the two hold the same password, tables, columns, rows (in
// order) and autonumber counters; otherwise where they first differ. Used to
// check an encoded file by decoding it again before it goes to disk.
std::string firstDifference(const jet::Database& expected, const jet::Database& actual);

} // namespace store
