// Tables of many pages: reference usage maps, a definition over three pages.
#include "writer_file_view.h"
#include "writer_test_support.h"

#include "jet/ByteOrder.h"
#include "jet/Reader.h"
#include "jet/Writer.h"

#include <gtest/gtest.h>

using namespace writertest;

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
