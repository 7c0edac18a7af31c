#pragma once

#include "jet/Database.h"
#include "support/ProgramFolder.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// Tables that exercise the writer, and checks shared by its tests.
namespace writertest {

// A column of every type the program can store, rows mixing each column's
// edge values (limits, empty texts, Nulls, texts with quotes and line breaks)
// with values drawn from `seed`.
jet::Table everyTypeTable(std::u16string name, std::size_t rows, unsigned seed);

// Memo and OLE values whose sizes straddle the three ways a long value is
// stored: inside the row, in one long-value row, in a chain of rows.
jet::Table longValueTable();

// Rows of seven full texts and seven 64-byte memos: too long with the memos
// inside, so they go to long-value rows.
jet::Table crowdedTable();

// `columns` Long and Text columns alternating; a definition over one page.
jet::Table wideTable(std::size_t columns, std::size_t rows);

// Operations like the program's: AutoNumber, date, amount, short text.
jet::Table operationsTable(std::u16string name, std::size_t rows);

// `rows` rows of 255-character Cyrillic texts, about 8 rows per page.
jet::Table longTextTable(std::size_t rows);

// The bytes in a file of a temporary folder, removed when this goes out of scope.
class TempFile
{
public:
    explicit TempFile(const std::vector<std::uint8_t>& bytes);
    const std::filesystem::path& path() const { return m_path; }
    std::string quoted() const;

private:
    velmora::test::ProgramFolder m_folder;
    std::filesystem::path m_path;
};

// The table as the file holds it: a Null Yes/No value is stored as No.
jet::Table storedForm(jet::Table table);

// What mdbtools says about the file agrees with `table`: mdb-count gives its
// row count and mdb-export prints the cells velmora::exportCsv prints (binary
// data as hex), apart from values mdbtools is known to misprint.
void expectMdbtoolsAgree(const TempFile& file, const jet::Table& table);

// Tables, columns, rows, AutoNumber counters and password are equal.
void expectSameDatabase(const jet::Database& actual, const jet::Database& expected);

} // namespace writertest
