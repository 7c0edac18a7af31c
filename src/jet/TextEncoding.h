#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// Text and Memo values as the writer stores them: plain UCS-2 LE. A value
// that starts with U+FEFF would read back as the compressed form (its first
// two bytes are the compression mark), so such a value is stored compressed:
// the mark, then characters U+0001-U+00FF as one byte and all others as two,
// with a zero byte switching between the two modes.
namespace jet::writer {

// Whether the value is stored as plain UCS-2 LE.
inline bool storedPlain(std::u16string_view text)
{
    return text.empty() || text.front() != u'\uFEFF';
}

// Size of the compressed form of a value; nullopt when the value holds a
// character whose low byte is zero, which that form cannot carry.
std::optional<std::size_t> compressedTextSize(std::u16string_view text);

// Stored size in bytes; nullopt when a value starting with U+FEFF cannot be
// stored.
inline std::optional<std::size_t> storedTextSize(std::u16string_view text)
{
    return storedPlain(text) ? 2 * text.size() : compressedTextSize(text);
}

// Writes exactly storedTextSize(text) bytes.
void writeStoredText(std::u16string_view text, std::uint8_t* out);

} // namespace jet::writer
