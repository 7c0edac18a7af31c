#pragma once

#include "jet/Database.h"

#include <cstdint>
#include <span>
#include <string>

namespace store {

// Empty when the two hold the same password, tables, columns, rows (in
// order) and autonumber counters; otherwise where they first differ. Used to
// check an encoded file by decoding it again before it goes to disk.
std::string firstDifference(const jet::Database& expected, const jet::Database& actual);

// The same comparison against the encoded file `bytes`, decoded row by row
// without keeping a second copy of the database. Throws jet::Error when the
// bytes do not decode at all.
std::string firstDifferenceInFile(const jet::Database& expected, std::span<const std::uint8_t> bytes);

} // namespace store
