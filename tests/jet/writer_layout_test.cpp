// How the writer lays out long values and usage maps, read at page level.
#include "writer_file_view.h"
#include "writer_test_support.h"

#include "jet/ByteOrder.h"
#include "jet/Writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace writertest;
namespace le = jet::le;

namespace {

// LVAL rows the Memo and OLE values of a table take: none for an empty value
// or one of up to 64 bytes (inside its row, unless `crowded` rows have no room
// for it), one row up to 4076 bytes, else a chain of 4072-byte chunks behind
// 4-byte pointers with the last chunk holding exactly the rest.
std::vector<std::size_t> expectedLongValueRows(const jet::Table& table, bool crowded)
{
    std::vector<std::size_t> rows;
    for (const jet::Row& row : table.rows)
        for (std::size_t c = 0; c < row.size(); ++c) {
            const auto type = table.columns[c].type;
            if (type != jet::ColumnType::Memo && type != jet::ColumnType::Ole)
                continue;
            const auto* text = std::get_if<std::u16string>(&row[c]);
            std::size_t bytes = text ? 2 * text->size() : std::get<jet::Bytes>(row[c]).size();
            if (bytes == 0 || (bytes <= 64 && !crowded))
                continue;
            if (bytes <= 4076) {
                rows.push_back(bytes);
                continue;
            }
            for (; bytes > 4072; bytes -= 4072)
                rows.push_back(4076);
            rows.push_back(4 + bytes);
        }
    std::sort(rows.begin(), rows.end());
    return rows;
}

// Pages of the long-value maps of a definition without indexes.
std::set<std::uint32_t> longValueMapPages(const FileView& file, std::uint32_t def)
{
    const auto bytes = file.definition(def);
    const std::size_t columns = le::u16(&bytes[0x2D]);
    std::size_t at = 0x3F + 25 * columns;
    std::size_t longValues = 0;
    for (std::size_t c = 0; c < columns; ++c) {
        const std::uint8_t type = bytes[0x3F + 25 * c];
        longValues += type == 0x0B || type == 0x0C;
        at += 2 + le::u16(&bytes[at]);
    }
    std::set<std::uint32_t> pages;
    for (std::size_t k = 0; k < longValues; ++k, at += 10)
        for (const std::size_t offset : {2, 6})
            for (const std::uint32_t p : file.mapPages(le::u32(&bytes[at + offset])))
                pages.insert(p);
    return pages;
}

} // namespace

TEST(WriterLayout, LongValuesGoInlineIntoOneRowOrIntoAChain)
{
    for (const jet::Table& table : {longValueTable(), crowdedTable()}) {
        SCOPED_TRACE(table.rows.size());
        jet::Database db;
        db.tables = {table};
        const auto bytes = jet::encodeDatabase(db);
        const FileView file(bytes);
        expectConsistentPages(file);

        const bool crowded = table.name == u"Crowded";
        EXPECT_EQ(file.longValueRowLengths(), expectedLongValueRows(table, crowded));

        const std::uint32_t def = file.definitionWithRowCount(static_cast<std::uint32_t>(table.rows.size()));
        const auto lval = file.pagesOwnedBy(0x4C41564C);
        EXPECT_EQ(longValueMapPages(file, def), std::set<std::uint32_t>(lval.begin(), lval.end()));
    }
}

TEST(WriterLayout, SmallTablesGetInlineMapsAndAFreePage)
{
    jet::Database db;
    db.tables = {operationsTable(u"Few", 300), operationsTable(u"None", 0)};
    const auto bytes = jet::encodeDatabase(db);
    const FileView file(bytes);
    for (const std::uint32_t rows : {300u, 0u}) {
        const std::uint32_t def = file.definitionWithRowCount(rows);
        int ownedType = -1, freeType = -1;
        const auto owned = file.mapPages(le::u32(file.page(def) + 0x37), &ownedType);
        const auto free = file.mapPages(le::u32(file.page(def) + 0x3B), &freeType);
        EXPECT_EQ(ownedType, 0);
        EXPECT_EQ(freeType, 0);
        EXPECT_EQ(owned, file.pagesOwnedBy(def));
        EXPECT_EQ(owned.empty(), rows == 0);
        // Pages are filled in order, so only the last one has room.
        EXPECT_EQ(free, rows == 0 ? owned : std::vector<std::uint32_t>{owned.back()});
    }
}
