#include "writer_test_support.h"

#include "support/Fixtures.h"

#include "CsvExport.h"
#include "jet/ByteOrder.h"
#include "jet/Unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <random>
#include <set>
#include <tuple>

namespace writertest {

using jet::Column;
using jet::ColumnType;
using jet::Value;

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
    jet::Guid ones;
    ones.bytes.fill(0xFF);
    const jet::Null null;
    return {
        {},                          // Id: numbered
        {true, false, null},         // Boolean
        {0, 255, null},              // Byte
        {-32768, 32767, 0},          // Integer
        {L::min(), L::max(), 0, -1}, // Long
        {jet::Currency{C::min()}, jet::Currency{C::max()}, jet::Currency{-12345678}, jet::Currency{0}},
        {0.15f, -3.4e38f, 1.17549435e-38f, 1.0f},
        {1.7976931348623157e308, -1e300, 4.9e-324, 0.1},
        {jet::DateTime{2.0}, jet::DateTime{2958100.0 + 86399.0 / 86400}, jet::DateTime{36526.75},
         jet::DateTime{45366.0 + 49530.0 / 86400}},
        {jet::Guid{}, ones, null},
        {std::u16string(), std::u16string(255, u'Ж'),
         std::u16string(u"Он сказал \"да\", потом\nушёл; 'всё'\r\n"), std::u16string(u"\uFEFFметка в начале"),
         std::u16string(u"😀, \"\""), null},
        {std::u16string(10, u'я'), std::u16string(u"x"), std::u16string()},
        {}, // Memo: by size
        {}, // OLE: by size
        {jet::Bytes(), jet::Bytes(255, 0x7F), null},
    };
}

Value randomValue(const Column& column, std::mt19937& rng)
{
    switch (column.type) {
    case ColumnType::Boolean:
        return rng() % 2 == 0;
    case ColumnType::Byte:
        return static_cast<std::int32_t>(rng() % 256);
    case ColumnType::Integer:
        return static_cast<std::int32_t>(rng() % 65536) - 32768;
    case ColumnType::Long:
        return static_cast<std::int32_t>(rng());
    case ColumnType::Currency:
        return jet::Currency{static_cast<std::int64_t>(rng() % 2000000001) - 1000000000};
    case ColumnType::Single:
        return static_cast<float>(static_cast<std::int32_t>(rng() % 2000001) - 1000000) / 1000.0f;
    case ColumnType::Double:
        return (static_cast<double>(rng()) - 2147483648.0) / 7.0;
    case ColumnType::DateTime: // 1900-01-01 to 9998-12-31, whole seconds
        return jet::DateTime{2.0 + rng() % 2958098 + static_cast<double>(rng() % 86400) / 86400};
    case ColumnType::Guid: {
        jet::Guid g;
        for (auto& b : g.bytes)
            b = static_cast<std::uint8_t>(rng());
        return g;
    }
    case ColumnType::Binary:
        return bytes(rng, rng() % 256);
    default:
        return cyrillic(rng, rng() % (column.maxChars() + 1));
    }
}

jet::Table tableOf(std::u16string name, std::vector<Column> columns)
{
    jet::Table t;
    t.name = std::move(name);
    t.columns = std::move(columns);
    return t;
}

} // namespace

jet::Table everyTypeTable(std::u16string name, std::size_t rows, unsigned seed)
{
    jet::Table t = tableOf(
        std::move(name),
        {Column::ofType(u"Id", ColumnType::Long, true), Column::ofType(u"Paid", ColumnType::Boolean),
         Column::ofType(u"Small", ColumnType::Byte), Column::ofType(u"Count", ColumnType::Integer),
         Column::ofType(u"Number", ColumnType::Long), Column::ofType(u"Amount", ColumnType::Currency),
         Column::ofType(u"Ratio", ColumnType::Single), Column::ofType(u"Value", ColumnType::Double),
         Column::ofType(u"When", ColumnType::DateTime), Column::ofType(u"Key", ColumnType::Guid),
         Column::text(u"Название", 255), Column::text(u"Code", 10), Column::ofType(u"Note", ColumnType::Memo),
         Column::ofType(u"Data", ColumnType::Ole), Column{u"Raw", ColumnType::Binary, 255, false}});
    std::mt19937 rng(seed);
    const auto edges = edgeValues();
    for (std::size_t r = 0; r < rows; ++r) {
        jet::Row row{static_cast<std::int32_t>(2 * r + 1)};
        for (std::size_t c = 1; c < t.columns.size(); ++c) {
            const auto& edge = edges[c];
            if (!edge.empty() && r < 2 * edge.size())
                row.push_back(edge[r % edge.size()]);
            else if (rng() % 8 == 0)
                row.emplace_back(); // Null
            else
                row.push_back(randomValue(t.columns[c], rng));
        }
        const std::size_t size = kLongSizes[(r + seed) % std::size(kLongSizes)];
        row[12] = cyrillic(rng, size / 2);
        row[13] = bytes(rng, size);
        t.rows.push_back(std::move(row));
    }
    t.lastAutoNumber = static_cast<std::int32_t>(2 * rows + 5); // numbers of deleted rows stay used
    return t;
}

jet::Table longValueTable()
{
    jet::Table t = tableOf(u"Long values", {Column::ofType(u"N", ColumnType::Long), Column::text(u"Pad", 255),
                                            Column::ofType(u"Memo", ColumnType::Memo),
                                            Column::ofType(u"Ole", ColumnType::Ole)});
    std::mt19937 rng(7);
    std::int32_t n = 0;
    for (const std::size_t size : kLongSizes)
        t.rows.push_back({++n, jet::Null{}, cyrillic(rng, size / 2), bytes(rng, size)});
    return t;
}

jet::Table crowdedTable()
{
    jet::Table t = tableOf(u"Crowded", {});
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

jet::Table wideTable(std::size_t columns, std::size_t rows)
{
    jet::Table t = tableOf(u"Wide", {});
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

jet::Table operationsTable(std::u16string name, std::size_t rows)
{
    jet::Table t =
        tableOf(std::move(name),
                {Column::ofType(u"F0", ColumnType::Long, true), Column::ofType(u"F1", ColumnType::DateTime),
                 Column::ofType(u"F2", ColumnType::Currency), Column::text(u"F3", 255)});
    std::mt19937 rng(11);
    for (std::size_t r = 0; r < rows; ++r)
        t.rows.push_back({static_cast<std::int32_t>(r + 1),
                          jet::DateTime{36000.0 + static_cast<double>(r / 40)},
                          jet::Currency{static_cast<std::int64_t>(rng() % 10000000) - 5000000},
                          cyrillic(rng, 3 + rng() % 20)});
    t.lastAutoNumber = static_cast<std::int32_t>(rows);
    return t;
}

jet::Table longTextTable(std::size_t rows)
{
    jet::Table t = tableOf(u"Тексты", {Column::text(u"Текст", 255)});
    std::mt19937 rng(13);
    for (std::size_t r = 0; r < rows; ++r)
        t.rows.push_back({cyrillic(rng, 255)});
    return t;
}

TempFile::TempFile(const std::vector<std::uint8_t>& bytes) : m_path(m_folder / "written.mdb")
{
    std::ofstream(m_path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::string TempFile::quoted() const
{
    return testsupport::shellQuoted(m_path);
}

namespace {

// Cells mdbtools cannot print: dates before 1899-12-30 or from day 1 000 000
// (year 4637) on come out as day 0 of 1900; characters beyond U+FFFF as "??".
bool mdbtoolsCannotPrint(const Value& value)
{
    if (const auto* date = std::get_if<jet::DateTime>(&value))
        return date->days < 0 || date->days >= 1e6;
    if (const auto* text = std::get_if<std::u16string>(&value))
        return std::any_of(text->begin(), text->end(), [](char16_t c) { return c >= 0xD800 && c < 0xE000; });
    return false;
}

// mdb-export -b hex prints binary data as hex, and Binary (not OLE) values
// only up to their first zero byte.
std::string hexCell(const jet::Bytes& bytes, ColumnType type)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (const std::uint8_t b : bytes) {
        if (b == 0 && type == ColumnType::Binary)
            break;
        hex += digits[b >> 4];
        hex += digits[b & 15];
    }
    return hex;
}

// With -b hex, mdb-export prints a GUID as the hex of its text, and that text
// lacks the dash between the last two groups; compared without dashes.
std::string guidText(const std::string& hex)
{
    std::string text;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        if (const char c = static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)); c != '-')
            text += c;
    return text;
}

} // namespace

jet::Table storedForm(jet::Table table)
{
    for (jet::Row& row : table.rows)
        for (std::size_t c = 0; c < row.size(); ++c)
            if (table.columns[c].type == ColumnType::Boolean && jet::isNull(row[c]))
                row[c] = false;
    return table;
}

void expectMdbtoolsAgree(const TempFile& file, const jet::Table& written)
{
    const jet::Table table = storedForm(written);
    const std::string name = testsupport::shellQuoted(jet::toUtf8(table.name));
    SCOPED_TRACE(jet::toUtf8(table.name));
    const auto count = testsupport::run("mdb-count " + file.quoted() + " " + name);
    EXPECT_EQ(count.output, std::to_string(table.rows.size()) + "\n");
    const auto exported = testsupport::run("mdb-export -b hex " + file.quoted() + " " + name);
    ASSERT_EQ(exported.exitCode, 0) << exported.output.substr(0, 500);
    const auto theirs = testsupport::parseCsv(exported.output);
    const auto ours = testsupport::parseCsv(velmora::exportCsv(table));
    ASSERT_EQ(theirs.size(), ours.size());
    ASSERT_FALSE(ours.empty());
    EXPECT_EQ(theirs[0], ours[0]);
    for (std::size_t r = 1; r < ours.size(); ++r) {
        ASSERT_EQ(theirs[r].size(), ours[r].size()) << "record " << r;
        for (std::size_t c = 0; c < ours[r].size(); ++c) {
            const Value& value = table.rows[r - 1][c];
            const ColumnType type = table.columns[c].type;
            if (mdbtoolsCannotPrint(value))
                continue;
            const auto* bytes = std::get_if<jet::Bytes>(&value);
            std::string expected = bytes ? hexCell(*bytes, type) : ours[r][c];
            if (type == ColumnType::Guid) {
                std::erase(expected, '-');
                EXPECT_EQ(guidText(theirs[r][c]), expected) << "record " << r;
            } else {
                EXPECT_EQ(theirs[r][c].substr(0, 300), expected.substr(0, 300))
                    << "record " << r << " field " << c;
            }
        }
    }
}

void expectSameDatabase(const jet::Database& actual, const jet::Database& expected)
{
    EXPECT_EQ(actual.password, expected.password);
    EXPECT_EQ(actual.creationDate, expected.creationDate);
    ASSERT_EQ(actual.tables.size(), expected.tables.size());
    const auto definition = [](const jet::Table& t) {
        std::vector<std::tuple<std::u16string, ColumnType, int, bool>> columns;
        for (const Column& c : t.columns)
            columns.emplace_back(c.name, c.type, c.length, c.autoNumber);
        return std::tuple(t.name, t.lastAutoNumber, columns, t.rows.size());
    };
    for (std::size_t i = 0; i < expected.tables.size(); ++i) {
        const jet::Table& a = actual.tables[i];
        const jet::Table& e = expected.tables[i];
        ASSERT_TRUE(definition(a) == definition(e)) << jet::toUtf8(e.name);
        const auto differs = std::mismatch(a.rows.begin(), a.rows.end(), e.rows.begin());
        EXPECT_TRUE(differs.first == a.rows.end())
            << jet::toUtf8(e.name) << ": row " << (differs.first - a.rows.begin()) << " differs";
    }
}

namespace le = jet::le;

namespace {

constexpr std::uint32_t kLval = 0x4C41564C;

std::size_t rowEnd(const std::uint8_t* p, std::size_t row)
{
    return row == 0 ? 4096 : le::u16(p + 14 + 2 * (row - 1)) & 0x1FFF;
}

void expectConsistentDataPage(const std::uint8_t* p, std::uint32_t number)
{
    const std::size_t rows = le::u16(p + 12);
    EXPECT_LE(rows, 255u) << "page " << number;
    std::size_t used = 14;
    for (std::size_t r = 0; r < rows; ++r) {
        const std::size_t start = le::u16(p + 14 + 2 * r);
        ASSERT_EQ(start & 0xE000, 0u) << "page " << number << " row " << r << " carries flags";
        ASSERT_LT(start, rowEnd(p, r)) << "page " << number << " row " << r;
        const std::size_t length = rowEnd(p, r) - start;
        const bool lval = le::u32(p + 4) == kLval;
        if (number != 1) {
            EXPECT_LE(length, lval ? 4076u : 4060u) << "page " << number << " row " << r;
        }
        used += length + 2;
    }
    EXPECT_EQ(le::u16(p + 2), 4096 - used) << "free space of page " << number;
    EXPECT_EQ(le::u32(p + 8), 0u);
}

// Free-space field of a definition page: 4096 - bytes on the page - 8, not below 0.
void expectConsistentDefinition(const FileView& file, std::uint32_t first)
{
    const std::size_t length = le::u32(file.page(first) + 8);
    std::size_t done = 0;
    for (std::uint32_t n = first; n != 0; n = le::u32(file.page(n) + 4)) {
        ASSERT_LT(done, length) << "definition " << first << " has a page too many";
        const std::size_t payload =
            n == first ? std::min<std::size_t>(length, 4096) : std::min(length - done, std::size_t{4088});
        const std::size_t onPage = n == first ? payload : payload + 8;
        done += payload;
        EXPECT_EQ(le::u16(file.page(n) + 2), onPage + 8 >= 4096 ? 0 : 4096 - onPage - 8) << "page " << n;
    }
    ASSERT_EQ(done, length) << "definition " << first << " ends early";
    const auto def = file.definition(first);
    EXPECT_EQ(le::u16(&def[length - 2]), 0xFFFF) << "definition " << first << " does not end with FF FF";
}

} // namespace

std::vector<std::uint32_t> FileView::definitionPages() const
{
    std::set<std::uint32_t> continuations, all;
    for (std::uint32_t n = 1; n < pageCount(); ++n)
        if (page(n)[0] == 0x02) {
            all.insert(n);
            if (const std::uint32_t next = le::u32(page(n) + 4))
                continuations.insert(next);
        }
    std::vector<std::uint32_t> first;
    std::set_difference(all.begin(), all.end(), continuations.begin(), continuations.end(),
                        std::back_inserter(first));
    return first;
}

std::uint32_t FileView::definitionWithRowCount(std::uint32_t rows) const
{
    for (const std::uint32_t n : definitionPages())
        if (le::u32(page(n) + 0x10) == rows)
            return n;
    return 0;
}

std::vector<std::uint8_t> FileView::definition(std::uint32_t first) const
{
    std::vector<std::uint8_t> def(page(first), page(first) + 4096);
    for (std::uint32_t n = le::u32(page(first) + 4); n != 0; n = le::u32(page(n) + 4))
        def.insert(def.end(), page(n) + 8, page(n) + 4096);
    def.resize(std::min<std::size_t>(def.size(), le::u32(page(first) + 8)));
    return def;
}

std::size_t FileView::definitionPageCount(std::uint32_t first) const
{
    std::size_t count = 0;
    for (std::uint32_t n = first; n != 0; n = le::u32(page(n) + 4))
        ++count;
    return count;
}

std::span<const std::uint8_t> FileView::row(std::uint32_t pointer) const
{
    const std::uint8_t* p = page(pointer >> 8);
    const std::size_t r = pointer & 0xFF;
    const std::size_t start = le::u16(p + 14 + 2 * r) & 0x1FFF;
    return {p + start, rowEnd(p, r) - start};
}

std::vector<std::uint32_t> FileView::mapPages(std::uint32_t pointer, int* type) const
{
    const auto map = row(pointer);
    if (type)
        *type = map[0];
    std::vector<std::uint32_t> pages;
    const auto collect = [&](const std::uint8_t* bitmap, std::size_t bytes, std::uint32_t start) {
        for (std::size_t bit = 0; bit < 8 * bytes; ++bit)
            if (bitmap[bit / 8] >> (bit % 8) & 1)
                pages.push_back(static_cast<std::uint32_t>(start + bit));
    };
    if (map[0] == 0)
        collect(map.data() + 5, map.size() - 5, le::u32(map.data() + 1));
    for (std::size_t slot = 0; map[0] == 1 && slot < (map.size() - 1) / 4; ++slot)
        if (const std::uint32_t bitmapPage = le::u32(map.data() + 1 + 4 * slot)) {
            EXPECT_EQ(page(bitmapPage)[0], 0x05);
            collect(page(bitmapPage) + 4, 4092, static_cast<std::uint32_t>(slot * 4092 * 8));
        }
    return pages;
}

std::vector<std::uint32_t> FileView::pagesOwnedBy(std::uint32_t owner) const
{
    std::vector<std::uint32_t> pages;
    for (std::uint32_t n = 2; n < pageCount(); ++n)
        if (page(n)[0] == 0x01 && le::u32(page(n) + 4) == owner)
            pages.push_back(n);
    return pages;
}

void expectConsistentPages(const FileView& file)
{
    ASSERT_GT(file.pageCount(), 3u);
    for (std::uint32_t n = 1; n < file.pageCount(); ++n) {
        const std::uint8_t* p = file.page(n);
        EXPECT_EQ(p[1], 0x01) << "page " << n;
        if (p[0] == 0x01) {
            expectConsistentDataPage(p, n);
        } else {
            EXPECT_TRUE(p[0] == 0x02 || p[0] == 0x05) << "page " << n << " of type " << int(p[0]);
        }
    }
    for (const std::uint32_t first : file.definitionPages())
        expectConsistentDefinition(file, first);
    // The file-wide map on page 1: pages of the file in use, the rest free.
    int type = -1;
    const auto free = file.mapPages(1u << 8, &type);
    EXPECT_EQ(type, 0);
    ASSERT_FALSE(free.empty());
    EXPECT_EQ(free.front(), file.pageCount());
    EXPECT_EQ(free.size(), free.back() - free.front() + 1);
}

} // namespace writertest
