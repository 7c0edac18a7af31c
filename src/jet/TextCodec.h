#pragma once

#include "Database.h"

#include <cstdint>
#include <span>
#include <string>

namespace jet {

// Text and Memo bytes as stored: Jet 4 keeps UCS-2, optionally in the
// compressed form that starts with FF FE; Jet 3 keeps code-page bytes.
std::u16string decodeStoredText(std::span<const std::uint8_t> bytes, Version version, std::uint16_t codePage);

} // namespace jet
