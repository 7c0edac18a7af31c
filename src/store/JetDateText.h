#pragma once

#include "jet/Value.h"

#include <QtGlobal>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace store {

// Julian day of 1899-12-30, day 0 of Jet dates.
inline constexpr qint64 kJetEpochJulianDay = 2415019;

// A Jet date as the store keeps it in SQLite: "yyyy-MM-dd", plus " HH:mm:ss"
// when it has a time of day (to the nearest second). nullopt outside the
// years 100 to 9999.
std::optional<std::string> jetDateToText(jet::DateTime value);
// The same into `out` (room for 19 characters, no terminator); the length, or 0.
std::size_t jetDateToText(jet::DateTime value, char* out);
// Back; nullopt when the text is not exactly one of those two forms.
std::optional<jet::DateTime> jetDateFromText(std::string_view text);

} // namespace store
