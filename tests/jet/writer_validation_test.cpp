// Values and definitions the file cannot hold are refused with a message that
// names the table and the column, and no file is produced.
#include "jet/Error.h"
#include "jet/Writer.h"

#include <gtest/gtest.h>

#include <functional>

using jet::Column;
using jet::ColumnType;

namespace {

// Table "Счета": Id Long, Name Text(10), Flag Byte, Count Integer, Blob Binary(4), Note Memo.
jet::Database validDatabase()
{
    jet::Table t;
    t.name = u"Счета";
    t.columns = {Column::ofType(u"Id", ColumnType::Long),       Column::text(u"Name", 10),
                 Column::ofType(u"Flag", ColumnType::Byte),     Column::ofType(u"Count", ColumnType::Integer),
                 Column{u"Blob", ColumnType::Binary, 4, false}, Column::ofType(u"Note", ColumnType::Memo)};
    t.rows = {{1, std::u16string(u"ok"), 255, -32768, jet::Bytes{1, 2, 3, 4}, std::u16string(u"memo")}};
    jet::Database db;
    db.tables = {t};
    return db;
}

std::u16string repeated(std::size_t n)
{
    return std::u16string(n, u'щ');
}

} // namespace

TEST(WriterValidation, RefusesWhatTheFileCannotHold)
{
    struct Case
    {
        const char* what;
        std::function<void(jet::Table&)> spoil;
        const char* named; // the column (or table) the message must name
    };
    const Case cases[] = {
        {"text over the column size", [](jet::Table& t) { t.rows[0][1] = repeated(11); }, "\"Name\", row 1"},
        {"text for a number", [](jet::Table& t) { t.rows[0][0] = std::u16string(u"1"); }, "\"Id\""},
        {"number for a text", [](jet::Table& t) { t.rows[0][1] = 5; }, "\"Name\""},
        {"Byte above 255", [](jet::Table& t) { t.rows[0][2] = 256; }, "\"Flag\""},
        {"Byte below 0", [](jet::Table& t) { t.rows[0][2] = -1; }, "\"Flag\""},
        {"Integer above 32767", [](jet::Table& t) { t.rows[0][3] = 32768; }, "\"Count\""},
        {"Binary over its size", [](jet::Table& t) { t.rows[0][4] = jet::Bytes(5); }, "\"Blob\""},
        {"bytes for a memo", [](jet::Table& t) { t.rows[0][5] = jet::Bytes(5); }, "\"Note\""},
        {"value in a Decimal column",
         [](jet::Table& t) {
             t.columns[4] = {u"Blob", ColumnType::Numeric, 17, false};
         },
         "\"Blob\""},
        {"U+FEFF text with U+0400", [](jet::Table& t) { t.rows[0][1] = std::u16string(u"\uFEFF\u0400"); },
         "\"Name\""},
        {"row one value short", [](jet::Table& t) { t.rows[0].pop_back(); }, "\"Счета\": row 1 has 5 values"},
        {"row too long",
         [](jet::Table& t) {
             for (int c = 0; c < 8; ++c) {
                 t.columns.push_back(Column::text(u"Wide" + std::u16string(1, u'0' + c), 255));
                 t.rows[0].push_back(repeated(255));
             }
         },
         "\"Wide7\", row 1: the row needs"},
        {"table name over 64 characters", [](jet::Table& t) { t.name = repeated(65); }, "65 characters"},
        {"column name over 64 characters", [](jet::Table& t) { t.columns[3].name = repeated(65); },
         "column \"щщщ"},
        {"256 columns",
         [](jet::Table& t) {
             t.rows.clear();
             while (t.columns.size() < 256)
                 t.columns.push_back(
                     Column::ofType({u'C', char16_t(0x400 + t.columns.size())}, ColumnType::Boolean));
         },
         "256 columns"},
        {"two columns of one name", [](jet::Table& t) { t.columns[3].name = u"id"; },
         "\"id\": the table has two"},
        {"AutoNumber on a text", [](jet::Table& t) { t.columns[1].autoNumber = true; }, "\"Name\""},
        {"Text of 300 characters", [](jet::Table& t) { t.columns[1].length = 600; }, "\"Name\""},
        {"Long of 2 bytes", [](jet::Table& t) { t.columns[0].length = 2; }, "\"Id\""},
        {"table named like the catalog", [](jet::Table& t) { t.name = u"msysobjects"; }, "system table"},
    };
    for (const Case& c : cases) {
        jet::Database db = validDatabase();
        ASSERT_NO_THROW(jet::encodeDatabase(db));
        c.spoil(db.tables[0]);
        try {
            jet::encodeDatabase(db);
            ADD_FAILURE() << c.what << ": written";
        } catch (const jet::Error& e) {
            EXPECT_EQ(e.code(), jet::ErrorCode::CannotWrite) << c.what;
            EXPECT_NE(std::string(e.what()).find(c.named), std::string::npos) << c.what << ": " << e.what();
        }
    }
    // Two tables of one name; a password of 21 characters, where 20 are allowed.
    jet::Database twice = validDatabase(), longPassword = validDatabase();
    twice.tables.push_back(twice.tables[0]);
    longPassword.password = std::u16string(21, u'p');
    for (const jet::Database& db : {twice, longPassword})
        EXPECT_THROW(jet::encodeDatabase(db), jet::Error);
    longPassword.password.pop_back();
    EXPECT_NO_THROW(jet::encodeDatabase(longPassword));
}
