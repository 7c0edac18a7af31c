#pragma once

#include "jet/Database.h"
#include "support/ProgramFolder.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
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

// Page-level reading of a written file, independent of the project's reader,
// for checking the structures that readers do not look at closely.
class FileView
{
public:
    explicit FileView(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {}

    std::uint32_t pageCount() const { return static_cast<std::uint32_t>(m_bytes.size() / 4096); }
    const std::uint8_t* page(std::uint32_t number) const
    {
        return m_bytes.data() + std::size_t(number) * 4096;
    }

    // First pages of all table definitions (continuation pages left out).
    std::vector<std::uint32_t> definitionPages() const;
    // The definition whose row count is `rows`; 0 when there is none.
    std::uint32_t definitionWithRowCount(std::uint32_t rows) const;
    // The definition bytes: the first page whole, then each continuation page after its header.
    std::vector<std::uint8_t> definition(std::uint32_t first) const;
    // How many pages the definition spans.
    std::size_t definitionPageCount(std::uint32_t first) const;

    std::span<const std::uint8_t> row(std::uint32_t pointer) const;
    // Pages a usage map lists; `type` receives the map's type byte.
    std::vector<std::uint32_t> mapPages(std::uint32_t pointer, int* type = nullptr) const;
    // Data pages whose owner field is `owner`.
    std::vector<std::uint32_t> pagesOwnedBy(std::uint32_t owner) const;

private:
    const std::vector<std::uint8_t>& m_bytes;
};

// Every data page's header agrees with its rows (row count, free space,
// descending offsets ending at the page end, row limits), every definition's
// free-space fields and length agree with its bytes, and the file-wide map
// marks exactly the file's pages as used.
void expectConsistentPages(const FileView& file);

} // namespace writertest
