#pragma once

#include "jet/Database.h"
#include "jet/TableChanges.h"

#include <cstdint>
#include <span>
#include <string>

namespace store {

// Name, type, size and autonumber.
bool sameColumn(const jet::Column& a, const jet::Column& b);

// Empty when the two hold the same password, tables, columns, rows (in
// order) and autonumber counters; otherwise where they first differ. Used to
// check an encoded file by decoding it again before it goes to disk.
std::string firstDifference(const jet::Database& expected, const jet::Database& actual);

// The same comparison against the encoded file `bytes`, decoded row by row
// without keeping a second copy of the database. Throws jet::Error when the
// bytes do not decode at all.
std::string firstDifferenceInFile(const jet::Database& expected, std::span<const std::uint8_t> bytes);

// The same comparison for a file written from a `previous` one that is known
// to decode to the contents it was written from: `next` must decode to those
// contents with `changes` applied (one per table, in table order), with the
// previous file's password and columns and each changed table's counter,
// and the tables `added` after the previous file's, holding the rows their
// changes put in.
// Pages the same as before are compared as bytes; only the rows that changed
// are decoded. Throws jet::Error when the bytes do not decode at all.
std::string firstDifferenceInChangedFile(std::span<const std::uint8_t> previous,
                                         std::span<const std::uint8_t> next,
                                         std::span<const jet::TableChanges> changes,
                                         std::span<const jet::Table> added = {});

} // namespace store
