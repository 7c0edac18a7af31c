#include "Schema.h"

#include "ColumnKinds.h"
#include "StoreTexts.h"

#include <QString>

namespace store {

using jet::Column;
using jet::ColumnType;

namespace {

Column longColumn(std::u16string name, bool autoNumber = false)
{
    return Column::ofType(std::move(name), ColumnType::Long, autoNumber);
}
Column money(std::u16string name)
{
    return Column::ofType(std::move(name), ColumnType::Currency);
}
Column date(std::u16string name)
{
    return Column::ofType(std::move(name), ColumnType::DateTime);
}
Column text(std::u16string name, int chars = 255)
{
    return Column::text(std::move(name), chars);
}

jet::Table table(std::u16string name, std::vector<Column> columns)
{
    jet::Table t;
    t.name = std::move(name);
    t.columns = std::move(columns);
    return t;
}

} // namespace

std::vector<jet::Table> schemaTables()
{
    return {
        table(u"Bank", {longColumn(u"F0", true), date(u"F1"), money(u"F2"), text(u"F3")}),
        table(u"Bills", {longColumn(u"F0", true), date(u"F1"), longColumn(u"F2"), money(u"F3"), text(u"F4"),
                         text(u"F5"), longColumn(u"F6")}),
        table(u"Bills_Dict", {longColumn(u"F0"), text(u"F1")}),
        table(u"Purse", {longColumn(u"F0"), money(u"F1")}),
        table(u"Purse_Dict", {longColumn(u"F0"), text(u"F1"), text(u"F2"), text(u"F3")}),
        table(u"Tech", {text(u"F0", 50), text(u"F1"), money(u"F2"), date(u"F3")}),
        table(u"Cur", {longColumn(u"F0"), money(u"F1")}),
        table(u"Mon", {longColumn(u"F0"), text(u"F1", 50)}),
    };
}

// Trash: F0 the entry's number, F1 when it was put in, F2 the action that put
// it in (the number of that action's first entry), F3 the table the operation
// came from, F4 why it was put in, F5 to F11 the operation's row: its number,
// date, amount, account, comment or name, note and purse.
std::vector<jet::Table> tablesMadeOnFirstUse()
{
    return {table(kTrashTable, {longColumn(u"F0", true), date(u"F1"), longColumn(u"F2"), text(u"F3", 50),
                                text(u"F4", 50), longColumn(u"F5"), date(u"F6"), money(u"F7"),
                                longColumn(u"F8"), text(u"F9"), text(u"F10"), longColumn(u"F11")})};
}

jet::Database preparedDatabase(double creationDate)
{
    jet::Database db;
    db.password = kFilePassword;
    db.creationDate = creationDate;
    db.tables = schemaTables();
    const jet::Null null;
    db.table(u"Tech")->rows = {
        {std::u16string(u"OSTATOK"), null, jet::Currency{0}, null},
        {std::u16string(u"BACKUP"), null, null, null},
    };
    db.table(u"Cur")->rows = {{std::int32_t{2}, jet::Currency{0}}, {std::int32_t{3}, jet::Currency{0}}};
    auto& months = db.table(u"Mon")->rows;
    for (int m = 1; m <= 12; ++m)
        months.push_back({std::int32_t{m}, QString::fromUtf8(texts::monthNames[m - 1]).toStdU16String()});
    return db;
}

std::vector<std::string> imageIndexes()
{
    return {"CREATE INDEX \"Bank by date\" ON Bank (F1, F2)",
            "CREATE INDEX \"Bills by date\" ON Bills (F1, F3)",
            "CREATE INDEX \"Bank by number\" ON Bank (F0)", "CREATE INDEX \"Bills by number\" ON Bills (F0)"};
}

namespace {

std::string tableMismatch(const jet::Table& expected, const jet::Table* actual)
{
    if (!actual)
        return QString::fromUtf8(texts::schemaNoTable)
            .arg(QString::fromStdU16String(expected.name))
            .toStdString();
    return kinds::tableRefusal(expected, *actual);
}

} // namespace

jet::Database withSchemaTables(jet::Database db)
{
    for (jet::Table& expected : schemaTables()) {
        jet::Table* actual = db.table(expected.name);
        if (!actual)
            db.tables.push_back(std::move(expected));
        else if (!tableMismatch(expected, actual).empty())
            *actual = std::move(expected);
    }
    return db;
}

std::string schemaMismatch(const jet::Database& db)
{
    for (const jet::Table& expected : schemaTables())
        if (std::string mismatch = tableMismatch(expected, db.table(expected.name)); !mismatch.empty())
            return mismatch;
    return {};
}

} // namespace store
