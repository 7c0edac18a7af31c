#pragma once

#include "Database.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace jet {

// Decodes a whole Jet 3 or Jet 4 file held in memory: every user table with
// its columns and live rows, in the order they are stored on the pages.
// The password is checked as the engine checks it: a file with a stored
// password opens only with exactly that password; a file without one opens
// with any. Throws jet::Error (NotAValidPassword, DamagedFile) and never reads
// outside the buffer.
Database readDatabase(std::span<const std::uint8_t> file, std::u16string_view password);

// Reads the file from disk and decodes it (FileNotFound when it is missing).
Database readFile(const std::filesystem::path& path, std::u16string_view password);

// The user-table names only, without decoding rows.
std::vector<std::u16string> tableNames(std::span<const std::uint8_t> file, std::u16string_view password);

} // namespace jet
