// The project's reader gives back exactly what the writer stored.
#include "writer_file_view.h"
#include "writer_test_support.h"

#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

using namespace writertest;

namespace {

jet::Database readBack(const jet::Database& db)
{
    return jet::readDatabase(jet::encodeDatabase(db), db.password);
}

jet::Database storedForm(jet::Database db)
{
    for (jet::Table& t : db.tables)
        t = writertest::storedForm(std::move(t));
    return db;
}

} // namespace

TEST(WriterRoundTrip, EveryTypeLongValuesAndEmptyTablesReadBackExactly)
{
    jet::Database db;
    db.password = u"пароль-20-символов!!";
    db.creationDate = 45366.573263888;
    // Rows of three bytes (a Yes/No column only) fill pages up to the 255-row limit.
    jet::Table flags{u"Flags", {jet::Column::ofType(u"Yes", jet::ColumnType::Boolean)}, {}, 0};
    for (int r = 0; r < 600; ++r)
        flags.rows.push_back({r % 3 == 0});
    db.tables = {everyTypeTable(u"Все типы", 120, 3), longValueTable(), crowdedTable(),
                 operationsTable(u"Пустая", 0),       wideTable(40, 3), flags};
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    EXPECT_EQ(bytes.size() % 4096, 0u);
    expectSameDatabase(jet::readDatabase(bytes, db.password), storedForm(db));
    expectConsistentPages(FileView(bytes));
}

TEST(WriterRoundTrip, PreparedFileIsStableAndDeterministic)
{
    const jet::Database db = store::preparedDatabase(45366.5);
    const auto first = jet::encodeDatabase(db);
    EXPECT_EQ(jet::encodeDatabase(db), first);
    const jet::Database back = jet::readDatabase(first, store::kFilePassword);
    expectSameDatabase(back, db);
    EXPECT_EQ(store::schemaMismatch(back), "");
    // Written again from what was read, the file is the same byte for byte.
    EXPECT_EQ(jet::encodeDatabase(back), first);

    // Without a creation date the file gets a fixed one, not the clock's.
    jet::Database undated = db;
    undated.creationDate = 0;
    EXPECT_EQ(readBack(undated).creationDate, 36526.0);
    EXPECT_EQ(jet::encodeDatabase(undated), jet::encodeDatabase(undated));
}

TEST(WriterRoundTrip, AutoNumberNeverGoesBackwards)
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
        EXPECT_EQ(readBack(db).tables.at(0).lastAutoNumber, c.expected) << c.lastAutoNumber;
    }
}

TEST(WriterRoundTrip, ZeroLengthTextStaysApartFromNull)
{
    jet::Database db;
    db.tables = {longTextTable(0)};
    db.tables[0].rows = {
        {std::u16string()}, {jet::Null{}}, {std::u16string(u"\uFEFF")}, {std::u16string(u"\uFEFFЁ")}};
    const auto rows = readBack(db).tables.at(0).rows;
    EXPECT_EQ(rows, db.tables[0].rows);
}
