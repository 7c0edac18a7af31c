#pragma once

#include "Database.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace jet {

// Encodes the database as a complete Jet 4 file with its password. Throws
// jet::Error when a value does not fit its column (a text longer than the
// column, a row over the page limit, a value of the wrong kind).
std::vector<std::uint8_t> encodeDatabase(const Database& db);

// Replaces `path` with `bytes` so that a crash at any moment leaves either the
// old or the new file: temporary file in the same folder, fsync, rename over
// the target, fsync of the folder. Throws jet::Error(CannotWrite) and leaves
// the target untouched on failure.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

} // namespace jet
