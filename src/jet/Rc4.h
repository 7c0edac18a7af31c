#pragma once

#include <cstdint>
#include <span>

namespace jet {

// RC4 stream cipher, applied in place (encrypting and decrypting are the same).
// Jet uses it for the masked part of page 0 and for encoded pages.
void rc4(std::span<const std::uint8_t> key, std::span<std::uint8_t> data);

} // namespace jet
