#include "CatalogWriter.h"

namespace jet::writer {

namespace {

constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr std::int32_t kDatabasesContainer = 0x0F000002;
constexpr std::int32_t kRelationshipsContainer = 0x0F000003;
constexpr std::int32_t kContainersParent = 0x0F000000;
constexpr std::int32_t kDatabaseObject = 0x10000000;
constexpr std::int32_t kSystemObject = std::int32_t(0x80000000u);
constexpr std::int32_t kTableType = 1;
constexpr std::int32_t kDatabaseType = 2;
constexpr std::int32_t kContainerType = 3;
constexpr int kNameChars = 255;
constexpr std::uint16_t kBinaryBytes = 510;

Column longColumn(std::u16string name)
{
    return Column::ofType(std::move(name), ColumnType::Long);
}
Column binary(std::u16string name)
{
    return {std::move(name), ColumnType::Binary, kBinaryBytes, false};
}
Column ole(std::u16string name)
{
    return Column::ofType(std::move(name), ColumnType::Ole);
}

Table table(std::u16string name, std::vector<Column> columns)
{
    Table t;
    t.name = std::move(name);
    t.columns = std::move(columns);
    return t;
}

Row catalogRow(std::int32_t id, std::int32_t parent, const std::u16string& name, std::int32_t type,
               std::int32_t flags, double date)
{
    Row row(17, Null{});
    row[0] = id;
    row[1] = parent;
    row[2] = name;
    row[3] = type;
    row[4] = DateTime{date};
    row[5] = DateTime{date};
    row[7] = flags;
    return row;
}

} // namespace

Table catalogTable()
{
    return table(u"MSysObjects",
                 {longColumn(u"Id"), longColumn(u"ParentId"), Column::text(u"Name", kNameChars),
                  Column::ofType(u"Type", ColumnType::Integer),
                  Column::ofType(u"DateCreate", ColumnType::DateTime),
                  Column::ofType(u"DateUpdate", ColumnType::DateTime), binary(u"Owner"), longColumn(u"Flags"),
                  Column::ofType(u"Database", ColumnType::Memo), Column::ofType(u"Connect", ColumnType::Memo),
                  Column::text(u"ForeignName", kNameChars), binary(u"RmtInfoShort"), ole(u"RmtInfoLong"),
                  ole(u"Lv"), ole(u"LvProp"), ole(u"LvModule"), ole(u"LvExtra")});
}

std::vector<Table> emptySystemTables()
{
    const auto text = [](std::u16string name) { return Column::text(std::move(name), kNameChars); };
    return {
        table(u"MSysACEs", {longColumn(u"ObjectId"), binary(u"SID"), longColumn(u"ACM"),
                            Column::ofType(u"FInheritable", ColumnType::Boolean)}),
        table(u"MSysQueries",
              {longColumn(u"ObjectId"), Column::ofType(u"Attribute", ColumnType::Byte), binary(u"Order"),
               text(u"Name1"), text(u"Name2"), Column::ofType(u"Expression", ColumnType::Memo),
               Column::ofType(u"Flag", ColumnType::Integer), longColumn(u"LvExtra")}),
        table(u"MSysRelationships", {text(u"szRelationship"), longColumn(u"grbit"), longColumn(u"ccolumn"),
                                     longColumn(u"icolumn"), text(u"szObject"), text(u"szColumn"),
                                     text(u"szReferencedObject"), text(u"szReferencedColumn")}),
    };
}

void fillCatalog(Table& catalog, std::span<const ListedTable> tables, double date)
{
    auto& rows = catalog.rows;
    rows.clear();
    rows.reserve(4 + tables.size());
    rows.push_back(
        catalogRow(kTablesContainer, kContainersParent, u"Tables", kContainerType, kSystemObject, date));
    rows.push_back(catalogRow(kDatabasesContainer, kContainersParent, u"Databases", kContainerType,
                              kSystemObject, date));
    rows.push_back(catalogRow(kRelationshipsContainer, kContainersParent, u"Relationships", kContainerType,
                              kSystemObject, date));
    rows.push_back(
        catalogRow(kDatabaseObject, kDatabasesContainer, u"MSysDb", kDatabaseType, kSystemObject, date));
    for (const ListedTable& t : tables)
        rows.push_back(catalogRow(static_cast<std::int32_t>(t.definitionPage), kTablesContainer,
                                  t.table->name, kTableType, t.system ? kSystemObject : 0, date));
}

} // namespace jet::writer
