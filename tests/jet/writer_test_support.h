#pragma once

#include "jet/Database.h"

#include <cstdint>
#include <string>
#include <vector>

// Tables that exercise the writer, and checks shared by its tests.
namespace writertest {

// A column of every type the program can store, rows mixing each column's
// edge values (limits, empty texts, Nulls, texts with quotes and line breaks)
// with values drawn from `seed`; memo and OLE values straddle the three ways a
// long value is stored: inside the row, in one long-value row, in a chain.
jet::Table everyTypeTable(std::u16string name, std::size_t rows, unsigned seed);

// Rows of seven full texts and seven 64-byte memos: too long with the memos
// inside, so they go to long-value rows.
jet::Table crowdedTable();

// `columns` Long and Text columns alternating; a definition over one page.
jet::Table wideTable(std::size_t columns, std::size_t rows);

// Operations like the program's: AutoNumber, date, amount, short text.
jet::Table operationsTable(std::u16string name, std::size_t rows);

// The database as the file holds it: a Null Yes/No value is stored as No.
jet::Database storedForm(jet::Database db);

// mdbtools, an independent reader, agrees with the file written from `db`:
// mdb-ver, mdb-tables, mdb-schema and mdb-count, and mdb-export prints the
// cells velmora::exportCsv prints (binary data as hex), apart from values
// mdbtools is known to misprint.
void expectMdbtoolsRead(const jet::Database& db);

// Tables, columns, rows, AutoNumber counters and password are equal.
void expectSameDatabase(const jet::Database& actual, const jet::Database& expected);

// What the engine relies on when it adds rows and readers do not look at,
// read page by page: every data page's header agrees with its rows (row count,
// free space, descending offsets, row limits), every definition's free-space
// fields and length agree with its bytes and it ends with FF FF, and the
// file-wide map marks exactly the file's pages as used.
void expectConsistentPages(const std::vector<std::uint8_t>& file);

// The data pages whose header names the table whose definition states `rows`
// rows, and the pages its free-space map lists.
struct TableMaps
{
    std::vector<std::uint32_t> pages;
    std::vector<std::uint32_t> free;
};
TableMaps tableMaps(const std::vector<std::uint8_t>& file, std::uint32_t rows);

} // namespace writertest
