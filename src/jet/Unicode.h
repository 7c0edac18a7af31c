#pragma once

#include <string>
#include <string_view>

namespace jet {

// Conversions between the UTF-16 text of the file and UTF-8 for the console.
// Unpaired surrogates become U+FFFD in UTF-8; invalid UTF-8 bytes likewise.
std::string toUtf8(std::u16string_view text);
std::u16string fromUtf8(std::string_view text);

} // namespace jet
