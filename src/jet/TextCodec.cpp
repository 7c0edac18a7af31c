#include "TextCodec.h"

#include "ByteOrder.h"
#include "CodePage.h"

namespace jet {

namespace {

// After FF FE each byte is one character; a zero byte switches to two-byte
// characters and the next zero byte switches back. Access never compresses
// text holding a character whose low byte is zero, so the switch is unambiguous.
std::u16string decodeCompressed(std::span<const std::uint8_t> bytes)
{
    std::u16string out;
    out.reserve(bytes.size());
    bool compressed = true;
    std::size_t i = 2;
    while (i < bytes.size()) {
        if (bytes[i] == 0x00) {
            compressed = !compressed;
            ++i;
        } else if (compressed) {
            out += static_cast<char16_t>(bytes[i++]);
        } else if (i + 1 < bytes.size()) {
            out += static_cast<char16_t>(le::u16(&bytes[i]));
            i += 2;
        } else {
            break;
        }
    }
    return out;
}

} // namespace

std::u16string decodeStoredText(std::span<const std::uint8_t> bytes, Version version, std::uint16_t codePage)
{
    if (version == Version::Jet3)
        return decodeCodePage(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
                              codePage);
    if (bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE)
        return decodeCompressed(bytes);
    std::u16string out(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<char16_t>(le::u16(&bytes[2 * i]));
    return out;
}

} // namespace jet
