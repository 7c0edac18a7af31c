// Files the writer makes, opened by mdbtools as an independent reader.
#include "writer_test_support.h"

#include "support/Fixtures.h"

#include "jet/Unicode.h"
#include "jet/Writer.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <map>

using namespace writertest;
using testsupport::run;
using testsupport::shellQuoted;

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
