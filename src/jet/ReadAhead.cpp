#include "ReadAhead.h"

#include "Catalog.h"
#include "Error.h"
#include "FileTables.h"
#include "Header.h"
#include "RowDecoder.h"
#include "UsageMap.h"

#include <algorithm>
#include <unordered_set>

namespace jet {

ReadAhead::ReadAhead(std::span<const std::uint8_t> file, std::u16string_view password)
    : m_pages(file, decodeHeader(file))
{
    checkPassword(m_pages.header(), password);
    m_db = withoutTables(m_pages.header());
    std::unordered_set<std::uint32_t> definitions;
    for (const CatalogEntry& entry : readCatalog(m_pages)) {
        if (entry.system)
            continue;
        if (!definitions.insert(entry.definitionPage).second)
            throw sharedDefinition().inTable(entry.name);
        const TableDefinition& def =
            m_definitions.emplace_back(readTableDefinition(m_pages, entry.definitionPage));
        const std::vector<std::uint32_t>& pages =
            m_dataPages.emplace_back(readUsageMap(m_pages, def.ownedMap));
        // Room for every row the definition states, so that the rows never
        // move while the caller reads them.
        m_db.tables.push_back(tableOf(m_pages, entry, def));
        m_db.tables.back().rows.reserve(rowCountHint(def, pages.size()));
    }
    m_rowsDecoded.assign(m_db.tables.size(), 0);
}

ReadAhead::~ReadAhead()
{
    stop();
}

void ReadAhead::stop() noexcept
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_letGo.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

ReadAhead::Running ReadAhead::start(RowsIn rowsIn, std::size_t rowsAhead)
{
    m_rowsAhead = rowsAhead;
    m_thread = std::thread([this, rowsIn = std::move(rowsIn)] {
        try {
            decode(rowsIn);
        } catch (const Stopped&) {
            // Nobody waits for the rows any more.
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            m_failure = std::current_exception();
        }
        m_published.notify_all();
    });
    return Running(*this);
}

void ReadAhead::decode(const RowsIn& rowsIn)
{
    std::vector<bool> claimedLongValueRows(std::size_t(m_pages.pageCount()) * 256);
    for (std::size_t t = 0; t < m_db.tables.size(); ++t) {
        const TableDefinition& def = m_definitions[t];
        std::vector<Row>& rows = m_db.tables[t].rows;
        const RowDecoder decoder(m_pages, def, &claimedLongValueRows);
        try {
            forEachStoredRow(m_pages, def.page, m_dataPages[t], [&](std::span<const std::uint8_t> bytes) {
                if (rows.size() == rows.capacity())
                    PageSource::damaged(Reason::RowCount, "more rows found than its definition states");
                rows.push_back(decoder.decode(bytes));
                if (rows.size() % kRowsPerReport == 0) {
                    publish(t, rows.size(), false);
                    if (rowsIn)
                        rowsIn(t, rows.size(), false);
                    waitForRoom(t, rows.size());
                }
            });
            checkRowCount(rows.size(), def);
        } catch (const Error& e) {
            throw e.inTable(m_db.tables[t].name);
        }
        publish(t, rows.size(), true);
        if (rowsIn)
            rowsIn(t, rows.size(), true);
    }
}

void ReadAhead::publish(std::size_t table, std::size_t rows, bool whole)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_stop)
            throw Stopped{};
        m_rowsDecoded[table] = rows;
        if (whole)
            m_tablesDecoded = table + 1;
    }
    m_published.notify_all();
}

void ReadAhead::waitForRoom(std::size_t table, std::size_t rows)
{
    if (m_rowsAhead == kNoLimit)
        return;
    const std::size_t decoded = rowsBefore(table, rows);
    std::size_t doneTable = 0, doneRows = 0;
    {
        std::unique_lock lock(m_mutex);
        m_letGo.wait(lock, [&] {
            return m_stop || decoded - std::min(decoded, rowsBefore(m_doneTable, m_doneRows)) < m_rowsAhead;
        });
        if (m_stop)
            throw Stopped{};
        doneTable = m_doneTable;
        doneRows = m_doneRows;
    }
    letGoOfRows(doneTable, doneRows);
}

void ReadAhead::letGoOfRows(std::size_t table, std::size_t rows)
{
    for (; m_freedTable < table; ++m_freedTable, m_freedRows = 0)
        std::vector<Row>().swap(m_db.tables[m_freedTable].rows);
    if (m_freedTable < m_db.tables.size())
        for (; m_freedRows < rows; ++m_freedRows)
            Row().swap(m_db.tables[m_freedTable].rows[m_freedRows]);
}

std::size_t ReadAhead::rowsBefore(std::size_t table, std::size_t rows) const
{
    for (std::size_t t = 0; t < std::min(table, m_definitions.size()); ++t)
        rows += m_definitions[t].rowCount; // those of a table decoded whole
    return rows;
}

void ReadAhead::letGo(std::size_t table, std::size_t rows)
{
    {
        const std::lock_guard lock(m_mutex);
        table = std::min(table, m_db.tables.size());
        if (std::pair(table, rows) <= std::pair(m_doneTable, m_doneRows))
            return;
        m_doneTable = table;
        m_doneRows = table < m_db.tables.size() ? rows : 0;
    }
    m_letGo.notify_all();
}

std::size_t ReadAhead::rowsDecoded(std::size_t table, std::size_t count)
{
    std::unique_lock lock(m_mutex);
    m_published.wait(
        lock, [&] { return m_failure || m_rowsDecoded.at(table) >= count || m_tablesDecoded > table; });
    if (m_failure)
        std::rethrow_exception(m_failure);
    return m_rowsDecoded[table];
}

void ReadAhead::finish()
{
    if (m_thread.joinable())
        m_thread.join();
    const std::lock_guard lock(m_mutex);
    if (m_failure)
        std::rethrow_exception(m_failure);
}

} // namespace jet
