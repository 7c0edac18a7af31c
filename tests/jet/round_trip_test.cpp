#include "support/Fixtures.h"
#include "support/ProgramFolder.h"

#include "CsvExport.h"
#include "jet/ByteOrder.h"
#include "jet/FileImage.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/DatabaseDiff.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <ranges>

using jet::Column;
using jet::ColumnType;
using jet::Value;
using namespace testsupport;

namespace {

std::u16string cyrillic(std::mt19937& rng, std::size_t chars)
{
    std::u16string s;
    for (std::size_t i = 0; i < chars; ++i)
        s += static_cast<char16_t>(i % 17 == 16 ? u' ' : 0x0410 + rng() % 64);
    return s;
}

jet::Bytes bytes(std::mt19937& rng, std::size_t n)
{
    jet::Bytes b(n);
    for (auto& x : b)
        x = static_cast<std::uint8_t>(rng());
    return b;
}

// Sizes of long values in bytes around the storage limits.
const std::size_t kLongSizes[] = {0, 10, 64, 65, 4076, 4077, 10000, 100000};

std::vector<std::vector<Value>> edgeValues()
{
    using L = std::numeric_limits<std::int32_t>;
    using C = std::numeric_limits<std::int64_t>;
    jet::Guid ones, counting;
    ones.bytes.fill(0xFF);
    for (std::uint8_t i = 0; i < 16; ++i)
        counting.bytes[i] = static_cast<std::uint8_t>(0x10 * i + 15 - i); // shows the byte order
    const jet::Null null;
    return {
        {},                          // Id: numbered
        {true, false, null},         // Boolean
        {0, 255, null},              // Byte
        {-32768, 32767, 0},          // Integer
        {L::min(), L::max(), 0, -1}, // Long
        {jet::Currency{C::min()}, jet::Currency{C::max()}, jet::Currency{-12345678}, jet::Currency{0},
         jet::Currency{-5000}, jet::Currency{1}},
        {0.15f, -3.4e38f, 1.17549435e-38f, 1.0f},
        {1.7976931348623157e308, -1e300, 4.9e-324, 0.1},
        {jet::DateTime{2.0}, jet::DateTime{2958100.0 + 86399.0 / 86400}, jet::DateTime{36526.75},
         jet::DateTime{45366.0 + 49530.0 / 86400}},
        {jet::Guid{}, ones, counting, null},
        {std::u16string(), std::u16string(255, u'Ж'),
         std::u16string(u"Он сказал \"да\", потом\nушёл; 'всё'\r\n"), std::u16string(u"\uFEFFметка в начале"),
         std::u16string(u"😀, \"\""), null},
        {std::u16string(10, u'я'), std::u16string(u"x"), std::u16string()},
        {}, // Memo: by size
        {}, // OLE: by size
        {jet::Bytes(), jet::Bytes(255, 0x7F), null},
    };
}

// A column of every type the program can store, rows mixing each column's
// edge values (limits, empty texts, Nulls, texts with quotes and line breaks);
// memo and OLE values straddle the three ways a long value is stored: inside
// the row, in one long-value row, in a chain.
jet::Table everyTypeTable(std::u16string name, std::size_t rows, unsigned seed)
{
    jet::Table t{
        std::move(name),
        {Column::ofType(u"Id", ColumnType::Long, true), Column::ofType(u"Paid", ColumnType::Boolean),
         Column::ofType(u"Small", ColumnType::Byte), Column::ofType(u"Count", ColumnType::Integer),
         Column::ofType(u"Number", ColumnType::Long), Column::ofType(u"Amount", ColumnType::Currency),
         Column::ofType(u"Ratio", ColumnType::Single), Column::ofType(u"Value", ColumnType::Double),
         Column::ofType(u"When", ColumnType::DateTime), Column::ofType(u"Key", ColumnType::Guid),
         Column::text(u"Название", 255), Column::text(u"Code", 10), Column::ofType(u"Note", ColumnType::Memo),
         Column::ofType(u"Data", ColumnType::Ole), Column{u"Raw", ColumnType::Binary, 255, false}},
        {},
        0};
    std::mt19937 rng(seed);
    const auto edges = edgeValues();
    for (std::size_t r = 0; r < rows; ++r) {
        jet::Row row{static_cast<std::int32_t>(2 * r + 1)};
        for (std::size_t c = 1; c < t.columns.size(); ++c) {
            const auto& edge = edges[c];
            if (edge.empty() || (r >= 2 * edge.size() && rng() % 8 == 0))
                row.emplace_back(); // Null
            else
                row.push_back(edge[(r < 2 * edge.size() ? r : rng()) % edge.size()]);
        }
        const std::size_t size = kLongSizes[(r + seed) % std::size(kLongSizes)];
        row[12] = cyrillic(rng, size / 2);
        row[13] = bytes(rng, size);
        t.rows.push_back(std::move(row));
    }
    t.lastAutoNumber = static_cast<std::int32_t>(2 * rows + 5); // numbers of deleted rows stay used
    return t;
}

// Rows of seven full texts and seven 64-byte memos: too long with the memos
// inside, so they go to long-value rows.
jet::Table crowdedTable()
{
    jet::Table t{u"Crowded", {}, {}, 0};
    for (int c = 0; c < 7; ++c) {
        t.columns.push_back(Column::text(u"Text" + jet::fromUtf8(std::to_string(c)), 255));
        t.columns.push_back(Column::ofType(u"Memo" + jet::fromUtf8(std::to_string(c)), ColumnType::Memo));
    }
    std::mt19937 rng(9);
    for (int r = 0; r < 3; ++r) {
        jet::Row row;
        for (int c = 0; c < 7; ++c) {
            row.push_back(cyrillic(rng, 255));
            row.push_back(cyrillic(rng, r == 2 ? 0 : 32)); // 64 bytes, or empty
        }
        t.rows.push_back(std::move(row));
    }
    return t;
}

// `columns` Long and Text columns alternating; a definition over one page.
jet::Table wideTable(std::size_t columns, std::size_t rows)
{
    jet::Table t{u"Wide", {}, {}, 0};
    for (std::size_t c = 0; c < columns; ++c) {
        const std::u16string name = jet::fromUtf8("Column number " + std::to_string(c) + " with a long name");
        t.columns.push_back(c % 2 == 0 ? Column::ofType(name, ColumnType::Long) : Column::text(name, 8));
    }
    for (std::size_t r = 0; r < rows; ++r) {
        jet::Row row;
        for (std::size_t c = 0; c < columns; ++c)
            row.push_back(c % 2 == 0 ? Value(static_cast<std::int32_t>(r * 1000 + c))
                                     : Value(jet::fromUtf8(std::to_string(r) + ":" + std::to_string(c))));
        t.rows.push_back(std::move(row));
    }
    return t;
}

// Operations like the program's: AutoNumber, date, amount, short text.
jet::Table operationsTable(std::u16string name, std::size_t rows)
{
    jet::Table t{std::move(name),
                 {Column::ofType(u"F0", ColumnType::Long, true), Column::ofType(u"F1", ColumnType::DateTime),
                  Column::ofType(u"F2", ColumnType::Currency), Column::text(u"F3", 255)},
                 {},
                 0};
    std::mt19937 rng(11);
    for (std::size_t r = 0; r < rows; ++r)
        t.rows.push_back({static_cast<std::int32_t>(r + 1),
                          jet::DateTime{36000.0 + static_cast<double>(r / 40)},
                          jet::Currency{static_cast<std::int64_t>(rng() % 10000000) - 5000000},
                          cyrillic(rng, 3 + rng() % 20)});
    t.lastAutoNumber = static_cast<std::int32_t>(rows);
    return t;
}

// mdbtools cannot print dates before 1899-12-30 or from day 1 000 000 (year
// 4637) on, which come out as day 0 of 1900, nor characters beyond U+FFFF.
bool mdbtoolsCannotPrint(const Value& value)
{
    if (const auto* date = std::get_if<jet::DateTime>(&value))
        return date->days < 0 || date->days >= 1e6;
    if (const auto* text = std::get_if<std::u16string>(&value))
        return std::any_of(text->begin(), text->end(), [](char16_t c) { return c >= 0xD800 && c < 0xE000; });
    return false;
}

// mdbtools, an independent reader, finds in `file` the tables of `db` with
// their row counts, and mdb-export prints each as velmora::exportCsv does,
// apart from values mdbtools misprints; it leaves out a GUID's last dash.
void expectMdbtoolsAgree(const std::filesystem::path& file, const jet::Database& db)
{
    std::string names;
    for (const jet::Table& t : db.tables)
        names += jet::toUtf8(t.name) + "\n";
    EXPECT_EQ(run("mdb-tables -1 " + shellQuoted(file)).output, names);
    for (const jet::Table& table : db.tables) {
        const std::string name = jet::toUtf8(table.name);
        SCOPED_TRACE(name);
        EXPECT_EQ(run("mdb-count " + shellQuoted(file) + " " + shellQuoted(name)).output,
                  std::to_string(table.rows.size()) + "\n");
        const auto exported = run("mdb-export " + shellQuoted(file) + " " + shellQuoted(name));
        ASSERT_EQ(exported.exitCode, 0) << exported.output.substr(0, 500);
        const auto theirs = parseCsv(exported.output);
        const auto ours = parseCsv(velmora::exportCsv(table));
        ASSERT_EQ(theirs.size(), ours.size());
        for (std::size_t r = 0; r < ours.size(); ++r) {
            ASSERT_EQ(theirs[r].size(), ours[r].size()) << "record " << r;
            for (std::size_t c = 0; c < ours[r].size(); ++c) {
                if (r > 0 && mdbtoolsCannotPrint(table.rows[r - 1][c]))
                    continue;
                std::string a = theirs[r][c], b = ours[r][c];
                if (r > 0 && table.columns[c].type == ColumnType::Guid) {
                    std::erase(a, '-');
                    std::erase(b, '-');
                }
                EXPECT_EQ(a.substr(0, 300), b.substr(0, 300)) << "record " << r << " column " << c;
            }
        }
    }
}

// The database as the file holds it: a Null Yes/No value is stored as No.
jet::Database storedForm(jet::Database db)
{
    for (jet::Table& table : db.tables)
        for (jet::Row& row : table.rows)
            for (std::size_t c = 0; c < row.size(); ++c)
                if (table.columns[c].type == ColumnType::Boolean && jet::isNull(row[c]))
                    row[c] = false;
    return db;
}

// The reference files made with a password all have the same one.
std::u16string passwordFor(const std::filesystem::path& file)
{
    return file.filename().string().find("with-password") != std::string::npos ? u"password" : u"";
}

std::vector<std::filesystem::path> fixtureFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(fixturesDir()))
        if (entry.path().extension() == ".mdb")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

namespace le = jet::le;

// What the engine relies on when it adds rows and readers do not look at:
// every data page's free space agrees with its rows, no row is over the page
// limit, and the file-wide map marks exactly the file's pages as used.
void expectConsistentPages(const std::vector<std::uint8_t>& bytes)
{
    ASSERT_EQ(bytes.size() % 4096, 0u);
    const std::uint32_t count = static_cast<std::uint32_t>(bytes.size() / 4096);
    const auto page = [&](std::uint32_t n) { return bytes.data() + std::size_t(n) * 4096; };
    // An inline usage map: the first page it stands for and the pages it marks.
    const auto inlineMap = [&](std::uint32_t pointer) {
        const std::uint8_t* p = page(pointer >> 8);
        const std::size_t r = pointer & 0xFF, start = le::u16(p + 14 + 2 * r) & 0x1FFF;
        const std::size_t end = r == 0 ? 4096 : le::u16(p + 12 + 2 * r) & 0x1FFF;
        EXPECT_EQ(p[start], 0) << "map at " << pointer;
        std::vector<std::uint32_t> marked;
        for (std::size_t bit = 0; bit < 8 * (end - start - 5); ++bit)
            if (p[start + 5 + bit / 8] >> (bit % 8) & 1)
                marked.push_back(static_cast<std::uint32_t>(le::u32(p + start + 1) + bit));
        return marked;
    };
    for (std::uint32_t n = 1; n < count; ++n) {
        const std::uint8_t* p = page(n);
        const bool continued = std::ranges::any_of(std::views::iota(1u, count), [&](std::uint32_t m) {
            return page(m)[0] == 0x02 && le::u32(page(m) + 4) == n;
        });
        // Pages are filled in order, so a table's free-space map lists at most its last page.
        if (p[0] == 0x02 && !continued) {
            EXPECT_LE(inlineMap(le::u32(p + 0x3B)).size(), 1u) << "free-space map of definition " << n;
        }
        if (p[0] != 0x01)
            continue;
        // A data page's free space is what its rows and their offsets leave.
        const std::size_t rows = le::u16(p + 12);
        std::size_t used = 14 + 2 * rows;
        for (std::size_t r = 0, end = 4096; r < rows; end = le::u16(p + 14 + 2 * r++) & 0x1FFF) {
            const std::size_t length = end - (le::u16(p + 14 + 2 * r) & 0x1FFF);
            EXPECT_LE(length, n == 1 ? 4096u : le::u32(p + 4) == 0x4C41564C ? 4076u : 4060u) << "page " << n;
            used += length;
        }
        EXPECT_EQ(le::u16(p + 2), 4096 - used) << "free space of page " << n;
    }
    // The file-wide map on page 1: pages from the file's end on are free, none before.
    const auto free = inlineMap(1u << 8);
    ASSERT_FALSE(free.empty());
    EXPECT_EQ(free.front(), count);
    EXPECT_EQ(free.size(), free.back() - free.front() + 1);
}

} // namespace

// The project's reader gives back exactly what the writer stored, the file is
// the same byte for byte when written again from what was read, and mdbtools,
// an independent reader, agrees: mdb-ver, mdb-tables, mdb-schema, mdb-count
// and mdb-export.
TEST(Writer, EveryTypeEdgeValuesLongValuesAndLargeTablesReadBackAlikeInOursAndMdbtools)
{
    using T = jet::ColumnType;
    jet::Database everyType;
    everyType.password = u"пароль-20-символов!!";
    everyType.creationDate = 45366.573263888;
    // Rows of three bytes (a Yes/No column only) fill pages up to the 255-row limit.
    jet::Table flags{u"Flags", {jet::Column::ofType(u"Yes", T::Boolean)}, {}, 0};
    for (int r = 0; r < 600; ++r)
        flags.rows.push_back({r % 3 == 0});
    // Texts of zero length stay apart from Null, with or without the compression mark.
    const jet::Table texts{
        u"Тексты",
        {jet::Column::text(u"Текст", 255)},
        {{std::u16string()}, {jet::Null{}}, {std::u16string(u"\uFEFF")}, {std::u16string(u"\uFEFFЁ")}},
        0};
    everyType.tables = {everyTypeTable(u"Все типы", 120, 3),
                        everyTypeTable(u"More", 40, 2),
                        crowdedTable(),
                        operationsTable(u"Пустая", 0),
                        wideTable(40, 3),
                        flags,
                        texts};
    // Tables of many pages: a reference usage map, a definition over three pages.
    jet::Database large;
    large.password = u"varnolit2031";
    large.creationDate = 45000.0;
    large.tables = {operationsTable(u"Bills", 100000), wideTable(150, 30), operationsTable(u"Few", 300)};
    for (const jet::Database& db : {store::preparedDatabase(45366.5), everyType, large}) {
        const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
        const jet::Database back = jet::readDatabase(bytes, db.password);
        EXPECT_EQ(store::firstDifference(storedForm(db), back), "");
        EXPECT_EQ(back.creationDate, db.creationDate);
        EXPECT_EQ(jet::encodeDatabase(back), bytes);
        // Written as the rows come in, a few at a time, into a buffer that
        // has to grow, the file is the same.
        std::mt19937 chunks(11);
        jet::FileImageBuilder builder(db, bytes.size() / 3);
        for (const jet::Table& table : db.tables) {
            for (std::size_t rows = 0; rows < table.rows.size(); builder.addRows(rows))
                rows = std::min(table.rows.size(), rows + chunks() % 700);
            builder.endTable();
        }
        EXPECT_TRUE(std::ranges::equal(builder.finish().bytes(), bytes));
        expectConsistentPages(bytes);
        const velmora::test::ProgramFolder folder;
        store::writeFileAtomically(folder.dataFile(), bytes);
        EXPECT_EQ(run("mdb-ver " + shellQuoted(folder.dataFile())).output, "JET4\n");
        expectMdbtoolsAgree(folder.dataFile(), storedForm(db));
    }
}

// Rows patched in their fixed-size columns (to and from Null, a Yes/No
// flipped, limits of every kind) come out of the previous file exactly as a
// full encoding of the new rows: on pages copied whole and patched, and row
// by row once a longer row has moved the rest.
TEST(Writer, PatchedRowsAreTheFullEncodingOfTheirNewValues)
{
    jet::Table table = everyTypeTable(u"Patched", 600, 4);
    // Memo and OLE values lie apart from their rows; files with them are written whole.
    table.columns.erase(table.columns.begin() + 12, table.columns.begin() + 14);
    for (jet::Row& row : table.rows)
        row.erase(row.begin() + 12, row.begin() + 14);
    jet::Database db;
    db.tables = {table};
    const jet::FileImage previous(db);
    const auto edges = edgeValues();
    jet::TableChanges changes;
    changes.patchedColumns = {1, 2, 3, 4, 5, 6, 7, 8, 9}; // Paid to Key
    changes.lastAutoNumber = table.lastAutoNumber;
    std::mt19937 rng(5);
    const auto someValues = [&] {
        jet::Row values;
        for (const std::size_t c : changes.patchedColumns)
            values.push_back(rng() % 4 == 0 ? Value(jet::Null{}) : edges[c][rng() % edges[c].size()]);
        return values;
    };
    // A third of the patches set the values they share, without a copy of their own.
    changes.sharedPatch = someValues();
    for (std::size_t r = 0; r < table.rows.size(); r += 1 + rng() % 4) {
        jet::Row& row = db.tables[0].rows[r];
        if (r >= 300 && changes.rows.size() % 100 == 0) {
            row[10] = std::u16string(200, u'щ');
            changes.rows.push_back({r, jet::RowChange::Kind::Replace, row});
            continue;
        }
        const bool shared = rng() % 3 == 0;
        jet::Row values = shared ? changes.sharedPatch : someValues();
        for (std::size_t k = 0; k < values.size(); ++k)
            row[changes.patchedColumns[k]] = values[k];
        changes.rows.push_back({r, jet::RowChange::Kind::Patch, shared ? jet::Row() : values});
    }
    const jet::FileImage next(previous, std::span(&changes, 1));
    EXPECT_TRUE(std::ranges::equal(next.bytes(), jet::encodeDatabase(db)));
    EXPECT_EQ(store::firstDifference(storedForm(db), jet::readDatabase(next.bytes(), u"")), "");
}

// Numbers of deleted rows stay used; without a creation date the file gets a
// fixed one, not the clock's.
TEST(Writer, AutoNumberNeverGoesBackwardsAndTheCreationDateIsFixed)
{
    struct Case
    {
        std::int32_t lastAutoNumber;
        std::vector<std::int32_t> ids;
        std::int32_t expected;
    };
    const Case cases[] = {
        {0, {1, 2, 3}, 3},         // counter behind the rows: raised to the highest number
        {80001, {1, 2, 3}, 80001}, // the last row was deleted: its number stays used
        {7, {}, 7},                // an emptied table keeps its counter
        {0, {5, 2}, 5},            // rows out of order
    };
    for (const Case& c : cases) {
        jet::Database db;
        db.tables = {operationsTable(u"Bank", 0)};
        db.tables[0].lastAutoNumber = c.lastAutoNumber;
        for (const std::int32_t id : c.ids)
            db.tables[0].rows.push_back({id, jet::Null{}, jet::Null{}, jet::Null{}});
        const jet::Database back = jet::readDatabase(jet::encodeDatabase(db), u"");
        EXPECT_EQ(back.tables.at(0).lastAutoNumber, c.expected) << c.lastAutoNumber;
        EXPECT_EQ(back.creationDate, 36526.0);
    }
}

// Each reference file as read, and as our writer writes it back, prints
// table for table what mdb-export prints of the original.
TEST(ReaderFixtures, EveryTableEqualsMdbExportAlsoWhenWrittenBack)
{
    if (fixturesDir().empty())
        GTEST_SKIP() << "reference files (../shared/jet-fixtures) not present: skipped";
    const velmora::test::ProgramFolder folder;
    for (const auto& file : fixtureFiles()) {
        SCOPED_TRACE(file.filename().string());
        const jet::Database db = jet::readDatabase(readBytes(file), passwordFor(file));
        expectMdbtoolsAgree(file, db);
        const auto rewritten = folder / file.filename().string();
        store::writeFileAtomically(rewritten, jet::encodeDatabase(db));
        const jet::Database back = jet::readDatabase(readBytes(rewritten), passwordFor(file));
        EXPECT_EQ(back.version, jet::Version::Jet4);
        EXPECT_EQ(back.password, db.password);
        EXPECT_EQ(store::firstDifference(db, back), "");
        expectMdbtoolsAgree(rewritten, db);
    }
}
