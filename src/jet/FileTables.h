#pragma once

#include "Catalog.h"
#include "Database.h"
#include "Error.h"
#include "Header.h"
#include "PageSource.h"
#include "Table.h"
#include "TableDefinition.h"

#include <cstddef>
#include <string_view>

namespace jet {

// Throws NotAValidPassword unless the file opens with `password`: a file with
// a stored password opens only with exactly that one, a file without one
// opens with any.
void checkPassword(const Header& header, std::u16string_view password);

// The file's version, password, creation date and code page, without tables.
Database withoutTables(const Header& header);

// The table a catalog entry and its definition describe, without rows.
Table tableOf(const PageSource& pages, const CatalogEntry& entry, const TableDefinition& def);

// The rows to make room for: the count the definition states, which a
// damaged one gets wrong, no more than its data pages can hold.
std::size_t rowCountHint(const TableDefinition& def, std::size_t dataPages);

// Damage: two catalog entries name one definition page.
Error sharedDefinition();

// Throws DamagedFile (RowCount) unless `found` rows are the count the definition states.
void checkRowCount(std::size_t found, const TableDefinition& def);

} // namespace jet
