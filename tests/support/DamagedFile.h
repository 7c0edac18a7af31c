#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// Damage done to a file our writer made, byte by byte, the way a failing disk
// or a careless program does it.
namespace testsupport {

// Clears `table`'s list of data pages (its usage-map row after the type
// byte: the bitmap-page pointers or the inline bitmap). Its rows vanish from
// view while its definition still counts them.
void hidePagesOf(std::vector<std::uint8_t>& file, std::u16string_view table);

// Moves `table`'s inline list of data pages to start at page 0, so that it
// lists pages of other kinds.
void shiftPagesOf(std::vector<std::uint8_t>& file, std::u16string_view table);

// Marks the last of `table`'s data pages as a page of another kind, and
// returns how many rows it held.
int markLastPageForeign(std::vector<std::uint8_t>& file, std::u16string_view table);

// Points the first link of the long-value chain holding `length` bytes at
// itself.
void loopLongValue(std::vector<std::uint8_t>& file, std::uint32_t length);

// Makes the chained long value of `length` bytes state `stated` bytes.
void restateLongValue(std::vector<std::uint8_t>& file, std::uint32_t length, std::uint32_t stated);

} // namespace testsupport
