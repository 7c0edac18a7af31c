#include "ChangedTableComparison.h"

#include "DatabaseDiff.h"
#include "jet/ByteOrder.h"
#include "jet/Unicode.h"
#include "jet/UsageMap.h"

#include <algorithm>
#include <exception>
#include <future>

namespace store {

namespace {

using Kind = jet::RowChange::Kind;

constexpr std::uint16_t kNotHere = 0x4000; // deleted rows and overflow stubs, which the reader skips
// Fewer changed rows than this are decoded on one thread.
constexpr std::size_t kChangedRowsWorthAThread = 2000;

// The counter a changed table must state: the one given, or a larger
// AutoNumber of a row put in.
std::int32_t expectedCounter(const jet::TableDefinition& def, const jet::TableChanges& changes)
{
    std::int32_t counter = changes.lastAutoNumber;
    for (std::size_t i = 0; i < def.columns.size(); ++i) {
        if (!def.columns[i].column.autoNumber)
            continue;
        for (const jet::RowChange& change : changes.rows)
            if (const jet::Value* value = jet::newValue(changes, change, i))
                if (const auto* n = std::get_if<std::int32_t>(value))
                    counter = std::max(counter, *n);
    }
    return counter;
}

} // namespace

ChangedTableComparison::PreviousRows::PreviousRows(const jet::PageSource& pages,
                                                   std::vector<std::uint32_t> owned)
    : m_pages(pages), m_owned(std::move(owned))
{
    settle();
}

std::size_t ChangedTableComparison::PreviousRows::liveRowsOfPage() const
{
    std::size_t live = 0;
    for (int i = 0; i < m_pages.rowCount(page()); ++i)
        live += (m_pages.row(page(), i).flags & kNotHere) == 0;
    return live;
}

void ChangedTableComparison::PreviousRows::nextRow()
{
    ++m_row;
    settle();
}

void ChangedTableComparison::PreviousRows::nextPage()
{
    ++m_page;
    m_row = 0;
    settle();
}

void ChangedTableComparison::PreviousRows::settle()
{
    while (!atEnd()) {
        if (m_row == m_pages.rowCount(page())) {
            ++m_page;
            m_row = 0;
        } else if (m_pages.row(page(), m_row).flags & kNotHere) {
            ++m_row;
        } else {
            return;
        }
    }
}

ChangedTableComparison::ChangedTableComparison(const jet::PageSource& previous, const jet::PageSource& next,
                                               const jet::CatalogEntry& entry,
                                               const jet::CatalogEntry* before,
                                               const jet::TableChanges& changes,
                                               std::span<const jet::Column> columns)
    : ChangedTableComparison(previous, next, entry,
                             ChangedTableComparison::before(previous, before, changes, columns), changes)
{}

ChangedTableComparison::ChangedTableComparison(const jet::PageSource& previous, const jet::PageSource& next,
                                               const jet::CatalogEntry& entry, Before before,
                                               const jet::TableChanges& changes)
    : m_next(next), m_nextDef(jet::readTableDefinition(next, entry.definitionPage)),
      m_previousColumns(std::move(before.columns)), m_previous(previous, std::move(before.owned)),
      m_decoder(m_next, m_nextDef), m_patchCheck(m_decoder, changes.patchedColumns), m_tableChanges(changes),
      m_changes(changes.rows), m_name(jet::toUtf8(entry.name)), m_counter(expectedCounter(m_nextDef, changes))
{}

ChangedTableComparison::Before ChangedTableComparison::before(const jet::PageSource& previous,
                                                              const jet::CatalogEntry* entry,
                                                              const jet::TableChanges& changes,
                                                              std::span<const jet::Column> columns)
{
    if (!entry)
        return {{columns.begin(), columns.end()}, {}};
    const jet::TableDefinition definition = jet::readTableDefinition(previous, entry->definitionPage);
    Before table;
    for (const jet::StoredColumn& column : definition.columns)
        table.columns.push_back(column.column);
    if (!changes.replacesAll)
        table.owned = jet::readUsageMap(previous, definition.ownedMap);
    return table;
}

std::string ChangedTableComparison::difference()
{
    if (std::string shape = shapeDifference(); !shape.empty())
        return shape;
    // A difference in the changed rows met before comes first.
    const auto found = [&](std::string difference) {
        std::string changed = firstChangedRowDifference();
        return changed.empty() ? difference : changed;
    };
    for (const std::uint32_t number : jet::readUsageMap(m_next, m_nextDef.ownedMap)) {
        const auto page = m_next.page(number);
        if (page[0] != 0x01 || jet::le::u32(page.data() + 4) != m_nextDef.page)
            return found("table " + m_name + ": page " + std::to_string(number) +
                         " is not one of its data pages");
        if (samePageAsBefore(page))
            continue;
        for (int i = 0; i < m_next.rowCount(page); ++i)
            if (const jet::RowSlot slot = m_next.row(page, i); !(slot.flags & kNotHere))
                if (std::string difference = nextRow(slot.bytes); !difference.empty())
                    return found(difference);
    }
    skipRemovals();
    if (m_change != m_changes.size() || !m_previous.atEnd() || m_found != m_nextDef.rowCount)
        return found("table " + m_name + ": " + std::to_string(m_found) + " rows found, " +
                     std::to_string(m_nextDef.rowCount) + " stated, not as changed");
    return found({});
}

// Each half of the changed rows is decoded on its own thread; the first
// row that differs or does not decode, in file order, is the answer.
std::string ChangedTableComparison::firstChangedRowDifference() const
{
    struct Failure
    {
        std::size_t index = std::size_t(-1);
        std::exception_ptr error;
    };
    const auto check = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            try {
                if (m_decoder.decode(m_changedRows[i].bytes) != *m_changedRows[i].expected)
                    return Failure{i, nullptr};
            } catch (...) {
                return Failure{i, std::current_exception()};
            }
        }
        return Failure{};
    };
    const std::size_t count = m_changedRows.size();
    const std::size_t middle = count < kChangedRowsWorthAThread ? count : count / 2;
    std::future<Failure> later = std::async(std::launch::deferred, check, middle, count);
    if (middle < count)
        later = std::async(std::launch::async, check, middle, count);
    Failure failure = check(0, middle);
    if (failure.index == std::size_t(-1))
        failure = later.get();
    if (failure.index == std::size_t(-1))
        return {};
    if (failure.error)
        std::rethrow_exception(failure.error);
    return "table " + m_name + ": row " + std::to_string(m_changedRows[failure.index].found);
}

std::string ChangedTableComparison::shapeDifference() const
{
    if (m_nextDef.columns.size() != m_previousColumns.size())
        return "table " + m_name + ": number of columns";
    for (std::size_t i = 0; i < m_nextDef.columns.size(); ++i)
        if (!sameColumn(m_nextDef.columns[i].column, m_previousColumns[i]))
            return "table " + m_name + ": column " + jet::toUtf8(m_nextDef.columns[i].column.name);
    if (m_nextDef.lastAutoNumber != m_counter)
        return "table " + m_name + ": autonumber counter";
    return {};
}

// A page that starts at the same row as a previous page holds the same
// rows when none of them changed but by patches, and its bytes are the
// previous page's, but for the patches.
bool ChangedTableComparison::samePageAsBefore(std::span<const std::uint8_t> page)
{
    if (!m_previous.atPageStart())
        return false;
    const std::size_t rows = m_previous.liveRowsOfPage();
    std::size_t after = m_change;
    for (; after < m_changes.size() && m_changes[after].position < m_position + rows; ++after)
        if (m_changes[after].kind != Kind::Patch)
            return false;
    if (after == m_change ? !std::ranges::equal(page, m_previous.page())
                          : !patchedAsBefore(page, rows, after))
        return false;
    m_change = after;
    m_position += rows;
    m_found += rows;
    m_previous.nextPage();
    return true;
}

// The patched rows lie where they lay, at falling addresses; every other
// byte of the page is as it was.
bool ChangedTableComparison::patchedAsBefore(std::span<const std::uint8_t> page, std::size_t rows,
                                             std::size_t after) const
{
    const std::span<const std::uint8_t> previous = m_previous.page();
    if (page.size() != previous.size() || static_cast<std::size_t>(m_next.rowCount(page)) != rows ||
        static_cast<std::size_t>(m_next.rowCount(previous)) != rows)
        return false;
    const auto same = [&](std::size_t from, std::size_t to) {
        return std::equal(page.begin() + from, page.begin() + to, previous.begin() + from);
    };
    std::size_t below = page.size(); // where the last patched row starts
    for (std::size_t c = m_change; c < after; ++c) {
        const jet::RowChange& patch = m_changes[c];
        const auto row = m_next.row(page, static_cast<int>(patch.position - m_position)).bytes;
        const std::size_t start = static_cast<std::size_t>(row.data() - page.data());
        if (start + row.size() > below || !same(start + row.size(), below) ||
            !m_patchCheck.isPatched(previous.subspan(start, row.size()), row,
                                    jet::patchValues(m_tableChanges, patch)))
            return false;
        below = start;
    }
    return same(0, below);
}

std::string ChangedTableComparison::nextRow(std::span<const std::uint8_t> bytes)
{
    ++m_found;
    const auto here = [&] { return "table " + m_name + ": row " + std::to_string(m_found); };
    skipRemovals();
    if (m_change < m_changes.size() && m_changes[m_change].position == m_position) {
        const jet::RowChange& change = m_changes[m_change++];
        if (change.kind == Kind::Patch)
            return samePatchedRow(bytes, jet::patchValues(m_tableChanges, change)) ? std::string() : here();
        if (change.kind == Kind::Replace)
            skipPrevious();
        m_changedRows.push_back({bytes, &change.row, m_found});
        return {};
    }
    if (m_previous.atEnd())
        return here() + " more than expected";
    const auto kept = m_previous.row();
    skipPrevious();
    return std::ranges::equal(bytes, kept) ? std::string() : here();
}

// A patched row has the bytes it had but for its patched columns, which hold their new values.
bool ChangedTableComparison::samePatchedRow(std::span<const std::uint8_t> bytes, const jet::Row& values)
{
    if (m_previous.atEnd())
        return false;
    const auto kept = m_previous.row();
    skipPrevious();
    return m_patchCheck.isPatched(kept, bytes, values);
}

void ChangedTableComparison::skipRemovals()
{
    while (m_change < m_changes.size() && m_changes[m_change].position == m_position &&
           m_changes[m_change].kind == Kind::Remove) {
        ++m_change;
        skipPrevious();
    }
}

void ChangedTableComparison::skipPrevious()
{
    ++m_position;
    m_previous.nextRow();
}

} // namespace store
