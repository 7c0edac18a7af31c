#include "jet/ByteOrder.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "jet/Writer.h"
#include "store/Schema.h"
#include "support/Fixtures.h"
#include "writer_test_support.h"

#include <gtest/gtest.h>

#include <map>

using namespace writertest;
using testsupport::run;
using testsupport::shellQuoted;

// The project's reader gives back exactly what the writer stored.

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

// Tables of many pages: reference usage maps, a definition over three pages.

namespace {

class WriterLarge : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_db = new jet::Database;
        s_db->password = u"varnolit2031";
        s_db->creationDate = 45000.0;
        s_db->tables = {operationsTable(u"Bills", 100000), longTextTable(20000), wideTable(150, 30),
                        operationsTable(u"Few", 300), operationsTable(u"None", 0)};
        s_bytes = new std::vector<std::uint8_t>(jet::encodeDatabase(*s_db));
    }
    static void TearDownTestSuite()
    {
        delete s_db;
        delete s_bytes;
    }
    static jet::Database* s_db;
    static std::vector<std::uint8_t>* s_bytes;
};

jet::Database* WriterLarge::s_db = nullptr;
std::vector<std::uint8_t>* WriterLarge::s_bytes = nullptr;

} // namespace

TEST_F(WriterLarge, ReadsBackExactly)
{
    expectSameDatabase(jet::readDatabase(*s_bytes, s_db->password), *s_db);
}

TEST_F(WriterLarge, MdbtoolsReadsEveryRow)
{
    const TempFile file(*s_bytes);
    for (const jet::Table& t : s_db->tables)
        expectMdbtoolsAgree(file, t);
}

// Large tables get reference maps, small ones inline maps; pages are filled in
// order, so a table's free-space map lists at most its last page.
TEST_F(WriterLarge, OwnedMapsListExactlyTheTablesDataPages)
{
    const FileView file(*s_bytes);
    expectConsistentPages(file);
    struct Expected
    {
        std::uint32_t rows;
        int mapType; // reference map for a spread over 512 pages
        std::size_t definitionPages;
        bool lastPageHasRoom;
    };
    for (const Expected e :
         {Expected{100000, 1, 1, true}, Expected{20000, 1, 1, true}, Expected{30, 0, 4, false},
          Expected{300, 0, 1, true}, Expected{0, 0, 1, false}}) {
        const std::uint32_t def = file.definitionWithRowCount(e.rows);
        ASSERT_NE(def, 0u) << e.rows;
        int type = -1;
        const auto listed = file.mapPages(jet::le::u32(file.page(def) + 0x37), &type);
        EXPECT_EQ(type, e.mapType) << e.rows;
        EXPECT_EQ(listed, file.pagesOwnedBy(def)) << e.rows;
        EXPECT_EQ(file.definitionPageCount(def), e.definitionPages) << e.rows;
        const auto free = file.mapPages(jet::le::u32(file.page(def) + 0x3B));
        EXPECT_EQ(free, e.lastPageHasRoom ? std::vector<std::uint32_t>{listed.back()}
                                          : std::vector<std::uint32_t>{})
            << e.rows;
    }
}

// Files the writer makes, opened by mdbtools as an independent reader.

namespace {

std::string schemaType(const jet::Column& c)
{
    using T = jet::ColumnType;
    static const std::map<T, std::string> names = {{T::Boolean, "Boolean NOT NULL"},
                                                   {T::Byte, "Byte"},
                                                   {T::Integer, "Integer"},
                                                   {T::Long, "Long Integer"},
                                                   {T::Currency, "Currency"},
                                                   {T::Single, "Single"},
                                                   {T::Double, "Double"},
                                                   {T::DateTime, "DateTime"},
                                                   {T::Guid, "Replication ID"},
                                                   {T::Memo, "Memo/Hyperlink (255)"},
                                                   {T::Ole, "OLE (255)"},
                                                   {T::Binary, "Binary"}};
    return c.type == T::Text ? "Text (" + std::to_string(c.maxChars()) + ")" : names.at(c.type);
}

// mdb-ver, mdb-tables, mdb-schema, mdb-count and mdb-export all agree with `db`.
void expectMdbtoolsReadDatabase(const jet::Database& db)
{
    const TempFile file(jet::encodeDatabase(db));
    EXPECT_EQ(run("mdb-ver " + file.quoted()).output, "JET4\n");
    std::string names;
    for (const jet::Table& t : db.tables)
        names += jet::toUtf8(t.name) + "\n";
    EXPECT_EQ(run("mdb-tables -1 " + file.quoted()).output, names);
    for (const jet::Table& t : db.tables) {
        const std::string schema =
            run("mdb-schema -T " + shellQuoted(jet::toUtf8(t.name)) + " " + file.quoted()).output;
        for (const jet::Column& c : t.columns) {
            const std::string line = "[" + jet::toUtf8(c.name) + "]\t\t\t" + schemaType(c);
            EXPECT_TRUE(schema.find(line + ",") != std::string::npos ||
                        schema.find(line + "\n") != std::string::npos)
                << line << " not in\n"
                << schema;
        }
        expectMdbtoolsAgree(file, t);
    }
}

} // namespace

TEST(WriterMdbtools, PreparedDataFileReadsBack)
{
    expectMdbtoolsReadDatabase(store::preparedDatabase(45366.5));
}

TEST(WriterMdbtools, EveryTypeEdgeValuesAndLongValuesReadBack)
{
    jet::Database db;
    db.password = u"секрет";
    db.creationDate = 45366.25;
    db.tables = {everyTypeTable(u"Все типы", 48, 1), everyTypeTable(u"More", 40, 2), longValueTable(),
                 crowdedTable(), operationsTable(u"Empty", 0)};
    expectMdbtoolsReadDatabase(db);
}
