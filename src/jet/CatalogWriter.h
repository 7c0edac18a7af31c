#pragma once

#include "Table.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace jet::writer {

// A table as the catalog lists it.
struct ListedTable
{
    const Table* table = nullptr;
    std::uint32_t definitionPage = 0; // its catalog Id
    bool system = false;
};

// The catalog table MSysObjects with the columns the engine gives it, no rows.
Table catalogTable();

// The other engine system tables, empty: MSysACEs, MSysQueries and
// MSysRelationships.
std::vector<Table> emptySystemTables();

// Fills the catalog's rows: the Tables, Databases and Relationships
// containers, MSysDb, then one row per table in the given order.
void fillCatalog(Table& catalog, std::span<const ListedTable> tables, double date);

} // namespace jet::writer
