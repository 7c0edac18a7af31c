#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jet {

// Single-byte text of Jet 3 files. Windows-1252 and Windows-1251 are mapped
// exactly; a file that names no code page (0) is read as Windows-1251, and any
// other code page as Windows-1252.
std::u16string decodeCodePage(std::string_view bytes, std::uint16_t codePage);

} // namespace jet
