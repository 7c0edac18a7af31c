#include "TextEncoding.h"

#include "ByteOrder.h"

#include <bit>
#include <cstring>

namespace jet::writer {

namespace {

bool oneByte(char16_t c)
{
    return c >= 0x01 && c <= 0xFF;
}

} // namespace

std::optional<std::size_t> compressedTextSize(std::u16string_view text)
{
    std::size_t size = 2;
    bool compressed = true;
    for (const char16_t c : text) {
        if ((c & 0xFF) == 0)
            return std::nullopt;
        if (oneByte(c) != compressed) {
            ++size;
            compressed = !compressed;
        }
        size += compressed ? 1 : 2;
    }
    return size;
}

void writeStoredText(std::u16string_view text, std::uint8_t* out)
{
    if (storedPlain(text)) {
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(out, text.data(), 2 * text.size());
        } else {
            for (const char16_t c : text) {
                le::put16(out, c);
                out += 2;
            }
        }
        return;
    }
    *out++ = 0xFF;
    *out++ = 0xFE;
    bool compressed = true;
    for (const char16_t c : text) {
        if (oneByte(c) != compressed) {
            *out++ = 0x00;
            compressed = !compressed;
        }
        if (compressed) {
            *out++ = static_cast<std::uint8_t>(c);
        } else {
            le::put16(out, c);
            out += 2;
        }
    }
}

} // namespace jet::writer
