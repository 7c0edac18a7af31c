#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/Schema.h"
#include "writer_test_support.h"

#include <gtest/gtest.h>

using namespace writertest;

// The project's reader gives back exactly what the writer stored, the file is
// the same byte for byte when written again from what was read, and mdbtools,
// an independent reader, agrees: mdb-ver, mdb-tables, mdb-schema, mdb-count
// and mdb-export.
TEST(Writer, EveryTypeEdgeValuesAndLongValuesReadBackAlikeInOursAndMdbtools)
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
    for (const jet::Database& db : {store::preparedDatabase(45366.5), everyType}) {
        const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
        const jet::Database back = jet::readDatabase(bytes, db.password);
        expectSameDatabase(back, storedForm(db));
        EXPECT_EQ(jet::encodeDatabase(back), bytes);
        expectConsistentPages(bytes);

        expectMdbtoolsRead(db);
    }
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

// Tables of many pages: a reference usage map, a definition over three pages.
// Pages are filled in order, so a table's free-space map lists at most its
// last page, the one with room for another row.
TEST(Writer, LargeTablesReadBackAlikeInOursAndMdbtoolsAndListTheirLastPageWithRoom)
{
    jet::Database db;
    db.password = u"varnolit2031";
    db.creationDate = 45000.0;
    db.tables = {operationsTable(u"Bills", 100000), wideTable(150, 30), operationsTable(u"Few", 300),
                 operationsTable(u"None", 0)};
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    expectSameDatabase(jet::readDatabase(bytes, db.password), db);
    expectMdbtoolsRead(db);
    expectConsistentPages(bytes);
    for (const auto& [rows, lastPageHasRoom] :
         {std::pair{100000u, true}, {30u, false}, {300u, true}, {0u, false}}) {
        const TableMaps maps = tableMaps(bytes, rows);
        ASSERT_EQ(maps.pages.empty(), rows == 0) << rows;
        EXPECT_EQ(maps.free, lastPageHasRoom ? std::vector<std::uint32_t>{maps.pages.back()}
                                             : std::vector<std::uint32_t>{})
            << rows;
    }
}
