#pragma once

#include "jet/Value.h"

#include <cstdint>
#include <optional>
#include <string>

// Values of a file's own column kinds turned into the store's and back:
// amounts kept in binary floating point, dates kept as text.
namespace store::values {

// The amount a person reads in a Single or Double: its shortest decimal form
// (12.349999999999998 stays, 12.35f reads 12.35), rounded half-up to the
// Currency unit as floor(x × 10000 + 0.5). nullopt when it is not finite or
// lies outside the Currency range.
std::optional<std::int64_t> unitsOfDouble(double value);
std::optional<std::int64_t> unitsOfSingle(float value);
// The nearest Double or Single to the exact amount; nullopt when it would not
// read back as the same amount.
std::optional<double> doubleOfUnits(std::int64_t units);
std::optional<float> singleOfUnits(std::int64_t units);

// How a file writes its dates as text: "dd.mm.yyyy" or "yyyy-mm-dd", with a
// time of day "HH:mm:ss" after a blank or without.
struct DateStyle
{
    bool dotted = true;
    bool withTime = false;
};

// A date written as "d.m.yyyy" or "yyyy-m-d", with "H:mm" or "H:mm:ss" after a
// blank or not. nullopt for any other text or a day that does not exist.
std::optional<jet::DateTime> dateOfText(const std::u16string& text);
// The style `text` is written in; nullopt when it is no date.
std::optional<DateStyle> styleOf(const std::u16string& text);
// The date as a text of that style (the time of day also when the style has
// none but the date has one); nullopt outside the years 100 to 9999.
std::optional<std::u16string> textOfDate(jet::DateTime date, DateStyle style);

} // namespace store::values
