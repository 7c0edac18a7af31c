#pragma once

#include "Outcome.h"

#include <QString>

#include <initializer_list>
#include <optional>

namespace store {

// A text an operation is about to write, and the column it goes to.
struct TextValue
{
    const char* table;
    const char* column;
    const QString& text;
};

// The most characters column `column` of `table` holds in the data file, from
// its schema (counted as QString counts them); 0 for a column that is not a
// text column of the schema.
int textLimit(const char* table, const char* column);

// Nullopt when every text fits its column. Otherwise the refusal for the
// first that does not, naming what it is and how long it may be; an
// operation refuses this way before it writes anything.
std::optional<Outcome> refuseTooLong(std::initializer_list<TextValue> values);

} // namespace store
