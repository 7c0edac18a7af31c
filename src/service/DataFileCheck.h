#pragma once

#include "jet/Database.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <span>

namespace service {

// Why `bytes` are not a whole Velmora data file, in words: empty, not a Jet
// file, damaged, protected by another password than the data file's, or
// without one of the eight tables. nullopt when they are one; `decoded`, when
// given, then holds the file's contents.
std::optional<QString> dataFileProblem(std::span<const std::uint8_t> bytes, jet::Database* decoded = nullptr);

} // namespace service
