#pragma once

#include "jet/Catalog.h"
#include "jet/PageSource.h"
#include "jet/RowDecoder.h"
#include "jet/TableChanges.h"
#include "jet/TableDefinition.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace store {

// Compares a table of a file written from a previous one with the rows
// expected there: the previous rows with the changes applied, in order. A
// page equal to the previous page that starts at the same row holds the
// same rows, as long as none of them changed; so does one that differs from
// it only in the patched bytes of patched rows; on any other page each kept
// row must have the very bytes it had, each changed one must decode to its
// new values, and each patched one must have the bytes it had but for its
// patched columns, which must decode to their new values. The table's columns must be the previous ones, its
// counter the changed one, and its row count what it holds.
class ChangedTableComparison
{
public:
    // `entry` is the table in the next file, `before` in the previous one;
    // none for a table the previous file lacks, whose columns are then
    // `columns` and whose changes put in every row.
    ChangedTableComparison(const jet::PageSource& previous, const jet::PageSource& next,
                           const jet::CatalogEntry& entry, const jet::CatalogEntry* before,
                           const jet::TableChanges& changes, std::span<const jet::Column> columns = {});

    // Empty when the table is as expected; otherwise where it first differs.
    // Throws jet::Error when the file does not decode.
    std::string difference();

private:
    // The table in the previous file: its columns and data pages.
    struct Before
    {
        std::vector<jet::Column> columns;
        std::vector<std::uint32_t> owned;
    };
    static Before before(const jet::PageSource& previous, const jet::CatalogEntry* entry,
                         const jet::TableChanges& changes, std::span<const jet::Column> columns);
    ChangedTableComparison(const jet::PageSource& previous, const jet::PageSource& next,
                           const jet::CatalogEntry& entry, Before before, const jet::TableChanges& changes);

    // The live rows of the table in the previous file, as the reader reads them.
    class PreviousRows
    {
    public:
        PreviousRows(const jet::PageSource& pages, std::vector<std::uint32_t> owned);
        bool atEnd() const { return m_page == m_owned.size(); }
        bool atPageStart() const { return m_row == 0 && !atEnd(); }
        std::span<const std::uint8_t> page() const { return m_pages.page(m_owned[m_page]); }
        std::span<const std::uint8_t> row() const { return m_pages.row(page(), m_row).bytes; }
        std::size_t liveRowsOfPage() const;
        void nextRow();
        void nextPage();

    private:
        void settle();

        const jet::PageSource& m_pages;
        std::vector<std::uint32_t> m_owned;
        std::size_t m_page = 0;
        int m_row = 0;
    };

    // A changed row met on the next file's pages, decoded and compared once
    // the pages are walked, on two threads.
    struct ChangedRow
    {
        std::span<const std::uint8_t> bytes;
        const jet::Row* expected;
        std::size_t found; // its number in the next file, from 1
    };

    std::string shapeDifference() const;
    std::string firstChangedRowDifference() const;
    bool samePatchedRow(std::span<const std::uint8_t> bytes, const jet::Row& values);
    bool samePageAsBefore(std::span<const std::uint8_t> page);
    bool patchedAsBefore(std::span<const std::uint8_t> page, std::size_t rows, std::size_t after) const;
    std::string nextRow(std::span<const std::uint8_t> bytes);
    void skipRemovals();
    void skipPrevious();

    const jet::PageSource& m_next;
    const jet::TableDefinition m_nextDef;
    const std::vector<jet::Column> m_previousColumns;
    PreviousRows m_previous;
    const jet::RowDecoder m_decoder;
    const jet::RowDecoder::PatchCheck m_patchCheck;
    const jet::TableChanges& m_tableChanges;
    const std::vector<jet::RowChange>& m_changes; // its rows
    std::string m_name;
    std::int32_t m_counter;
    std::size_t m_change = 0;   // the next change to meet
    std::size_t m_position = 0; // of the next previous row
    std::size_t m_found = 0;    // rows of the next file so far
    std::vector<ChangedRow> m_changedRows;
};

} // namespace store
