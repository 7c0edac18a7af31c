// Damaged input never crashes or hangs the reader: it decodes or raises a
// jet::Error that says what is wrong.
#include "support/DamagedFile.h"

#include "jet/Error.h"
#include "jet/ReadAhead.h"
#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <random>
#include <ranges>

using namespace testsupport;

namespace {

// A file of our own with rows in every Velmora table; Bank is long enough
// to be decoded on two threads.
std::vector<std::uint8_t> ownFile()
{
    jet::Database db = store::preparedDatabase(45000.0);
    jet::Table& bank = *db.table(u"Bank");
    for (int i = 1; i <= 3000; ++i)
        bank.rows.push_back({std::int32_t{i}, jet::DateTime{45000.0 + i}, jet::Currency{i * 12345},
                             std::u16string(u"Зарплата за месяц ") + char16_t(u'0' + i % 10)});
    bank.lastAutoNumber = 3000;
    db.tables.push_back({u"Notes",
                         {jet::Column::ofType(u"Text", jet::ColumnType::Memo)},
                         {{std::u16string(5000, u'ж')}, {std::u16string(u"short")}},
                         0});
    return jet::encodeDatabase(db);
}

constexpr std::uint32_t kLongNote = 10000; // bytes of the 5000-letter note

} // namespace

// Random changes are the fuzz targets' work; these are refused by name. A
// mismatch between what the file states and holds names the table; salvaging
// keeps every other table and what could be read of this one.
TEST(ReaderRobustness, DamagedFilesAreRefusedWithWhatIsWrong)
{
    using Bytes = std::vector<std::uint8_t>;
    struct Case
    {
        const char* says;
        std::function<void(Bytes&)> patch;
        jet::Reason reason;
        const char16_t* table;        // the table named and salvaged without rows
        bool keepsFirstPages = false; // but with the rows of the pages before the damage
    };
    int lastPageRows = 0;
    const auto garble = [](Bytes& f) {
        std::mt19937 random(7);
        for (std::size_t i = 4096; i < f.size(); ++i)
            f[i] = static_cast<std::uint8_t>(random());
    };
    const Case cases[] = {
        {"empty", [](Bytes& f) { f.clear(); }, jet::Reason::EmptyFile, nullptr},
        {"too short",
         [](Bytes& f) {
             f = {0x00, 0x01, 0x00};
         },
         jet::Reason::NotJetFile, nullptr},
        {"does not start", [](Bytes& f) { f.assign(8192, 'x'); }, jet::Reason::NotJetFile, nullptr},
        {"shorter than one page", [](Bytes& f) { f.resize(300); }, jet::Reason::NotJetFile, nullptr},
        {"the file is cut short", [](Bytes& f) { f.resize(f.size() - 4096); }, jet::Reason::CutShort,
         nullptr},
        {"is not a table definition page", garble, jet::Reason::Definition, nullptr},
        {"0 rows found of the 3000 its definition states (table Bank)",
         [](Bytes& f) { hidePagesOf(f, u"Bank"); }, jet::Reason::RowCount, u"Bank"},
        {"page 1, which is not one of its data pages (table Bank)",
         [](Bytes& f) { shiftPagesOf(f, u"Bank"); }, jet::Reason::ForeignPage, u"Bank"},
        {"which is not one of its data pages (table Bank)",
         [&](Bytes& f) { lastPageRows = markLastPageForeign(f, u"Bank"); }, jet::Reason::ForeignPage, u"Bank",
         true},
        {"is met twice: a chain loops or two values share it (table Notes)",
         [](Bytes& f) { loopLongValue(f, kLongNote); }, jet::Reason::LongValueReused, u"Notes"},
        {"chain ends before its 10002 bytes (table Notes)",
         [](Bytes& f) { restateLongValue(f, kLongNote, kLongNote + 2); }, jet::Reason::LongValue, u"Notes"},
        {"chain goes on after its 9998 bytes (table Notes)",
         [](Bytes& f) { restateLongValue(f, kLongNote, kLongNote - 2); }, jet::Reason::LongValue, u"Notes"},
        {"longer than the whole file (table Notes)",
         [](Bytes& f) { restateLongValue(f, kLongNote, 0x3FFFFFFF); }, jet::Reason::LongValue, u"Notes"},
    };
    const Bytes sound = ownFile();
    const jet::Database expected = jet::readDatabase(sound, store::kFilePassword);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.says);
        Bytes file = sound;
        c.patch(file);
        try {
            jet::readDatabase(file, store::kFilePassword);
            ADD_FAILURE() << "decoded";
        } catch (const jet::Error& e) {
            EXPECT_EQ(e.code(), jet::ErrorCode::DamagedFile);
            EXPECT_EQ(e.reason(), c.reason);
            EXPECT_NE(std::string(e.what()).find(c.says), std::string::npos) << e.what();
        }
        // Read ahead, the same damage stops decoding, here or on the way.
        try {
            jet::ReadAhead reading(file, store::kFilePassword);
            const jet::ReadAhead::Running running = reading.start();
            reading.finish();
            ADD_FAILURE() << "read ahead";
        } catch (const jet::Error& e) {
            EXPECT_EQ(e.reason(), c.reason);
        }
        if (!c.table)
            continue;
        std::optional<jet::Error> damage;
        const jet::Database salvaged = jet::salvageDatabase(file, store::kFilePassword, damage);
        ASSERT_TRUE(damage && damage->reason() == c.reason && damage->table() == c.table);
        ASSERT_EQ(salvaged.tables.size(), expected.tables.size());
        for (std::size_t t = 0; t < expected.tables.size(); ++t)
            if (expected.tables[t].name != c.table)
                EXPECT_EQ(salvaged.tables[t].rows, expected.tables[t].rows);
            else if (c.keepsFirstPages)
                EXPECT_TRUE(
                    std::ranges::equal(salvaged.tables[t].rows,
                                       expected.tables[t].rows |
                                           std::views::take(expected.tables[t].rows.size() - lastPageRows)));
            else
                EXPECT_TRUE(salvaged.tables[t].rows.empty());
    }
}

// Read ahead, each row comes in as readDatabase decodes it while the taker
// still reads earlier ones. Decoding runs no further ahead of the rows let go
// of than allowed, and lets go of them; a taker that goes stops it, also
// while it waits for room.
TEST(ReadAhead, RowsComeInAheadOfTheTakerAndAreLetGoOfBehindIt)
{
    const std::vector<std::uint8_t> file = ownFile();
    const jet::Database expected = jet::readDatabase(file, store::kFilePassword);
    constexpr std::size_t ahead = 1000;
    jet::ReadAhead reading(file, store::kFilePassword);
    ASSERT_EQ(reading.database().tables.size(), expected.tables.size());
    std::vector<std::size_t> rowsBefore{0}; // of all earlier tables
    for (const jet::Table& table : expected.tables)
        rowsBefore.push_back(rowsBefore.back() + table.rows.size());
    std::atomic<std::size_t> letGo = 0;
    std::size_t lastTable = 0, lastRows = 0, mostAhead = 0;
    const auto rowsIn = [&](std::size_t table, std::size_t rows, bool whole) {
        EXPECT_TRUE(table > lastTable || rows >= lastRows);
        EXPECT_TRUE(whole ? rows == expected.tables[table].rows.size()
                          : rows <= expected.tables[table].rows.size());
        lastTable = table;
        lastRows = rows;
        mostAhead = std::max(mostAhead, rowsBefore[table] + rows - letGo);
    };
    {
        const jet::ReadAhead::Running running = reading.start(rowsIn, ahead);
        for (std::size_t t = 0; t < expected.tables.size(); ++t) {
            ASSERT_EQ(reading.database().tables[t].name, expected.tables[t].name);
            for (std::size_t taken = 0;;) {
                const std::size_t in = reading.rowsDecoded(t, taken + 1);
                for (; taken < in; ++taken)
                    ASSERT_EQ(reading.database().tables[t].rows[taken], expected.tables[t].rows[taken]);
                // Behind by up to 300 rows: decoding has to wait for room.
                const std::size_t done =
                    in == expected.tables[t].rows.size() ? in : in - std::min<std::size_t>(in, 300);
                letGo = rowsBefore[t] + done;
                reading.letGo(t, done);
                if (in == expected.tables[t].rows.size())
                    break;
            }
        }
        reading.finish();
    }
    EXPECT_EQ(lastTable, expected.tables.size() - 1);
    EXPECT_LT(mostAhead, ahead + jet::ReadAhead::kRowsPerReport);
    // Bank's last report found at least 1,561 of its 2,560 rows let go of.
    const std::vector<jet::Row>& bank = reading.database().tables[0].rows;
    EXPECT_TRUE(
        std::all_of(bank.begin(), bank.begin() + 1561, [](const jet::Row& row) { return row.empty(); }));

    jet::ReadAhead waiting(file, store::kFilePassword);
    {
        const jet::ReadAhead::Running running = waiting.start({}, jet::ReadAhead::kRowsPerReport);
        EXPECT_EQ(waiting.rowsDecoded(0, 1), jet::ReadAhead::kRowsPerReport);
    } // nothing let go of: decoding waits for room until it is stopped
    EXPECT_THROW(jet::ReadAhead(file, u"другой"), jet::Error);
}
