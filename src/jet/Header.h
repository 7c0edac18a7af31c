#pragma once

#include "Database.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace jet {

inline constexpr std::size_t kJet4PageSize = 4096;
inline constexpr std::size_t kJet3PageSize = 2048;

// What page 0 (the database definition page) says about the file.
struct Header
{
    Version version = Version::Jet4;
    std::size_t pageSize = kJet4PageSize;
    std::uint16_t codePage = 1252;
    std::uint32_t databaseKey = 0; // non-zero: pages 1.. are RC4-encoded
    std::u16string password;
    double creationDate = 0;
};

// Decodes page 0 (the start of the file). Throws Error(DamagedFile) when the
// file does not start like a Jet 3 or Jet 4 database.
Header decodeHeader(std::span<const std::uint8_t> file);

// Page 0 of a new Jet 4 file: no page encoding, code page 1252, the general
// sort order, and the password masked with the creation date.
std::vector<std::uint8_t> encodeJet4Header(std::u16string_view password, double creationDate);

} // namespace jet
