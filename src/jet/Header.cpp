#include "Header.h"

#include "ByteOrder.h"
#include "CodePage.h"
#include "Error.h"
#include "Rc4.h"

#include <array>
#include <cmath>
#include <cstring>

namespace jet {

namespace {

constexpr std::size_t kMaskedStart = 0x18;
constexpr std::size_t kJet4MaskedLength = 128;
constexpr std::size_t kJet3MaskedLength = 126;
constexpr std::size_t kPasswordOffset = 0x42;
constexpr std::size_t kJet4PasswordBytes = 40;
constexpr std::size_t kJet3PasswordBytes = 20;
constexpr std::size_t kCreationDateOffset = 0x72;
constexpr char kSignature[] = "Standard Jet DB";

// Offsets below are relative to the start of the page (inside the masked
// region after unmasking).
void applyHeaderMask(std::uint8_t* page, std::size_t length)
{
    static const std::array<std::uint8_t, 4> key{0xC7, 0xDA, 0x39, 0x6B};
    rc4(key, std::span(page + kMaskedStart, length));
}

// Jet 4 masks the password with the whole days of the creation date.
std::array<std::uint8_t, 4> passwordMask(double creationDate)
{
    std::array<std::uint8_t, 4> mask{};
    const double days = std::trunc(creationDate);
    const auto value = days >= 0 && days < 4294967296.0 ? static_cast<std::uint32_t>(days) : 0u;
    le::put32(mask.data(), value);
    return mask;
}

[[noreturn]] void notAJetFile(const std::string& why, Reason reason = Reason::NotJetFile)
{
    throw Error(ErrorCode::DamagedFile, "Unrecognized database format: " + why, reason);
}

} // namespace

Header decodeHeader(std::span<const std::uint8_t> file)
{
    if (file.size() < 0x100)
        notAJetFile(file.empty() ? "the file is empty" : "the file is too short for a database header",
                    file.empty() ? Reason::EmptyFile : Reason::NotJetFile);
    if (file[0] != 0x00 || std::memcmp(file.data() + 4, kSignature, sizeof kSignature - 1) != 0)
        notAJetFile("the file does not start with a Jet database header");

    Header h;
    const std::uint32_t version = le::u32(&file[0x14]);
    if (version == 0) {
        h.version = Version::Jet3;
        h.pageSize = kJet3PageSize;
    } else if (version == 1) {
        h.version = Version::Jet4;
        h.pageSize = kJet4PageSize;
    } else {
        notAJetFile("format version " + std::to_string(version) + " is not Jet 3 or Jet 4");
    }
    if (file.size() < h.pageSize)
        notAJetFile("the file is shorter than one page");

    std::array<std::uint8_t, kJet4PageSize> page{};
    std::memcpy(page.data(), file.data(), h.pageSize);
    applyHeaderMask(page.data(), h.version == Version::Jet4 ? kJet4MaskedLength : kJet3MaskedLength);

    h.codePage = le::u16(&page[0x3C]);
    h.databaseKey = le::u32(&page[0x3E]);
    if (h.version == Version::Jet4) {
        h.creationDate = le::f64(&page[kCreationDateOffset]);
        if (!std::isfinite(h.creationDate))
            h.creationDate = 0;
        const auto mask = passwordMask(h.creationDate);
        for (std::size_t i = 0; i + 1 < kJet4PasswordBytes; i += 2) {
            const std::uint8_t lo = page[kPasswordOffset + i] ^ mask[i % 4];
            const std::uint8_t hi = page[kPasswordOffset + i + 1] ^ mask[(i + 1) % 4];
            const char16_t c = static_cast<char16_t>(lo | (hi << 8));
            if (c == 0)
                break;
            h.password += c;
        }
    } else {
        std::string raw;
        for (std::size_t i = 0; i < kJet3PasswordBytes && page[kPasswordOffset + i] != 0; ++i)
            raw += static_cast<char>(page[kPasswordOffset + i]);
        h.password = decodeCodePage(raw, h.codePage);
    }
    return h;
}

std::vector<std::uint8_t> encodeJet4Header(std::u16string_view password, double creationDate)
{
    if (password.size() > kJet4PasswordBytes / 2)
        throw Error(ErrorCode::CannotWrite, "a database password has at most 20 characters",
                    Reason::ValueDoesNotFit);
    std::vector<std::uint8_t> page(kJet4PageSize, 0);
    page[1] = 0x01;
    std::memcpy(&page[4], kSignature, sizeof kSignature); // with its terminating zero
    le::put32(&page[0x14], 1);

    static const std::uint8_t constant[24] = {0, 1, 0, 0, 1, 1, 0, 0, 2, 0, 0, 0,
                                              3, 0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0};
    std::memcpy(&page[0x18], constant, sizeof constant);
    le::put16(&page[0x3C], 1252);
    le::put32(&page[0x3E], 0); // pages are not encoded
    const auto mask = passwordMask(creationDate);
    for (std::size_t i = 0; i < kJet4PasswordBytes; ++i) {
        const std::size_t ch = i / 2;
        const char16_t c = ch < password.size() ? password[ch] : 0;
        const auto byte = static_cast<std::uint8_t>(i % 2 == 0 ? c & 0xFF : c >> 8);
        page[kPasswordOffset + i] = byte ^ mask[i % 4];
    }
    le::put32(&page[0x6A], 0x261C); // value an engine-made empty file carries
    le::put32(&page[0x6E], 0x0409); // general sort order, version 0
    le::putF64(&page[kCreationDateOffset], creationDate);
    applyHeaderMask(page.data(), kJet4MaskedLength);

    le::put32(&page[0x98], 0x0654);
    std::memcpy(&page[0x9C], "4.0", 4);
    for (std::size_t i = 0xE00; i < 0x1000; i += 2) {
        page[i] = 0x00;
        page[i + 1] = 0x01;
    }
    page[0xE00] = 0x01;
    return page;
}

} // namespace jet
