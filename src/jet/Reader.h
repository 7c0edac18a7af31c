#pragma once

#include "Database.h"
#include "Error.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace jet {

// Decodes a whole Jet 3 or Jet 4 file held in memory: every user table with
// its columns and live rows, in the order they are stored on the pages.
// The password is checked as the engine checks it: a file with a stored
// password opens only with exactly that password; a file without one opens
// with any. Throws jet::Error (NotAValidPassword, DamagedFile) and never reads
// outside the buffer.
//
// What the file states is checked against what is found: each table must hold
// as many rows as its definition says, list only its own data pages, and each
// long value must have exactly its stated length in rows that no other value
// or earlier link of its chain uses. A mismatch is DamagedFile, naming the table.
Database readDatabase(std::span<const std::uint8_t> file, std::u16string_view password);

// Decodes what can be decoded of a damaged file: a table found damaged keeps
// the rows read before the damage (a wrong row count keeps them all), a table
// whose definition is unreadable is left out, and decoding goes on with the
// next table. `damage` receives the first damage found, or nothing. A wrong
// password and damage to the header or the list of tables still throw.
Database salvageDatabase(std::span<const std::uint8_t> file, std::u16string_view password,
                         std::optional<Error>& damage);

// Receives a file's contents as visitDatabase decodes them.
class DatabaseVisitor
{
public:
    virtual ~DatabaseVisitor() = default;
    // The file's version, password, creation date and code page, without tables.
    virtual void database(const Database& header) = 0;
    // A table's name, columns and counter, without rows; `rowCountHint` is the
    // count the file states, which a damaged file may get wrong.
    virtual void beginTable(const Table& table, std::size_t rowCountHint) = 0;
    // The next live row of that table. The visitor may move from it.
    virtual void row(Row& row) = 0;
    virtual void endTable() = 0;
};

// Decodes a file as readDatabase does, handing every table and row to the
// visitor instead of keeping them: a check of a whole file needs no second
// copy of it in memory.
void visitDatabase(std::span<const std::uint8_t> file, std::u16string_view password,
                   DatabaseVisitor& visitor);

// The user-table names only, without decoding rows.
std::vector<std::u16string> tableNames(std::span<const std::uint8_t> file, std::u16string_view password);

} // namespace jet
