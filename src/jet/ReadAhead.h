#pragma once

#include "Database.h"
#include "PageSource.h"
#include "TableDefinition.h"

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <string_view>
#include <thread>
#include <vector>

namespace jet {

// Decodes a whole file as readDatabase does, on a thread of its own, while
// the caller takes the rows decoded so far. Every table's name and columns
// are read first. Whatever readDatabase would call damage stops decoding:
// rows are kept only of a file read whole.
class ReadAhead
{
public:
    // Reads the header and every table's definition. Throws as readDatabase
    // does, NotAValidPassword included.
    ReadAhead(std::span<const std::uint8_t> file, std::u16string_view password);
    // Stops decoding and waits for the thread.
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // The file's tables with their columns and counters. Their rows come in
    // as they are decoded: until finish(), read only rows rowsDecoded()
    // counts and change none.
    Database& database() { return m_db; }

    // Stops the decoding it stands for when it goes, and waits for it.
    class Running
    {
    public:
        explicit Running(ReadAhead& reading) : m_reading(reading) {}
        ~Running() { m_reading.stop(); }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        ReadAhead& m_reading;
    };

    // Called on the decoding thread as rows come in: the rows of `table`
    // before `rows` are decoded, and all of them when `whole`.
    using RowsIn = std::function<void(std::size_t table, std::size_t rows, bool whole)>;

    // Starts decoding. What `rowsIn` throws stops decoding as damage does.
    // Decoding keeps no more than `rowsAhead` rows that are not let go of.
    [[nodiscard]] Running start(RowsIn rowsIn = {}, std::size_t rowsAhead = kNoLimit);
    // Waits until `count` rows of `table` are decoded, or all its rows are;
    // gives how many are. Throws what stopped decoding.
    std::size_t rowsDecoded(std::size_t table, std::size_t count);
    // The caller is done with the rows of `table` before `rows`, and with
    // every earlier table's: the decoding thread lets go of them, so that
    // the memory rows take is freed and reused on one thread, and may decode
    // that much further.
    void letGo(std::size_t table, std::size_t rows);

    static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);
    // Rows decoded between two reports to the taker, and so how far
    // decoding may overrun the rows it may run ahead.
    static constexpr std::size_t kRowsPerReport = 512;
    // Waits for the end of decoding. Throws what stopped it.
    void finish();

private:
    void stop() noexcept;
    struct Stopped
    {
    };
    void decode(const RowsIn& rowsIn);
    void publish(std::size_t table, std::size_t rows, bool whole);
    void waitForRoom(std::size_t table, std::size_t rows);
    void letGoOfRows(std::size_t table, std::size_t rows);
    // Rows of the tables before `table` and of `table` before `rows`.
    std::size_t rowsBefore(std::size_t table, std::size_t rows) const;

    PageSource m_pages;
    std::vector<TableDefinition> m_definitions;
    std::vector<std::vector<std::uint32_t>> m_dataPages; // per table, as its owned map lists them
    Database m_db;

    std::mutex m_mutex;
    std::condition_variable m_published;
    std::vector<std::size_t> m_rowsDecoded;        // per table, under m_mutex
    std::size_t m_tablesDecoded = 0;               // under m_mutex
    std::size_t m_doneTable = 0, m_doneRows = 0;   // what the caller is done with, under m_mutex
    std::size_t m_freedTable = 0, m_freedRows = 0; // on the decoding thread
    std::size_t m_rowsAhead = kNoLimit;
    std::condition_variable m_letGo;
    std::exception_ptr m_failure; // under m_mutex
    bool m_stop = false;          // under m_mutex
    std::thread m_thread;
};

} // namespace jet
