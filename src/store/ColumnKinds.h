#pragma once

#include "jet/Table.h"

#include <string>

// What each column of the data file's tables holds, and the kinds of Jet
// column a file may keep it in: files made years ago chose their own types,
// and a household's file must open whatever sensible choice it made.
namespace store::kinds {

enum class Meaning
{
    Amount,      // money: Currency, Double or Single
    WholeNumber, // codes and operation numbers: Byte, Integer or Long
    Date,        // Date/Time, or a text of at least kMinDateChars characters
    Text,        // Text of any size, or Memo
};

// A date kept as text needs room for "dd.mm.yyyy".
inline constexpr int kMinDateChars = 10;

// The meaning of a column of the prepared file, by its type there.
Meaning meaningOf(const jet::Column& ours);
bool accepts(Meaning meaning, const jet::Column& column);

// Empty when `actual` holds every column of `ours` (found by name, in any
// order) in a kind accepted for its meaning; otherwise the refusal naming the
// table, the column, what it holds and what was expected.
std::string tableRefusal(const jet::Table& ours, const jet::Table& actual);

} // namespace store::kinds
