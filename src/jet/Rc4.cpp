#include "Rc4.h"

#include <array>
#include <utility>

namespace jet {

void rc4(std::span<const std::uint8_t> key, std::span<std::uint8_t> data)
{
    std::array<std::uint8_t, 256> s;
    for (int i = 0; i < 256; ++i)
        s[i] = static_cast<std::uint8_t>(i);
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + s[i] + key[i % key.size()]) & 0xFF;
        std::swap(s[i], s[j]);
    }
    int i = 0, j = 0;
    for (std::uint8_t& byte : data) {
        i = (i + 1) & 0xFF;
        j = (j + s[i]) & 0xFF;
        std::swap(s[i], s[j]);
        byte ^= s[(s[i] + s[j]) & 0xFF];
    }
}

} // namespace jet
