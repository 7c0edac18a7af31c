#pragma once

#include "FileImage.h"
#include "TableChanges.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace jet {

// The row changes that turn the tables of `from` into those of `to`, one per
// table in table order, each with the counter `to` states: rows are matched
// by their stored bytes, so only the rows `to` holds differently are decoded.
// None when `to` does not hold the same tables as `from`, or does not decode.
// The changes need not be the fewest; whether they give `to` exactly is for
// the caller to prove, by writing them into `from` and comparing the bytes.
std::optional<std::vector<TableChanges>> rowChangesBetween(const FileImage& from,
                                                           std::span<const std::uint8_t> to);

} // namespace jet
