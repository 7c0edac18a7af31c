#pragma once

#include "Catalog.h"
#include "Header.h"
#include "PageSource.h"
#include "Table.h"
#include "TableDefinition.h"

#include <string_view>

namespace jet {

// Throws NotAValidPassword unless the file opens with `password`: a file with
// a stored password opens only with exactly that one, a file without one
// opens with any.
void checkPassword(const Header& header, std::u16string_view password);

// The table a catalog entry and its definition describe, without rows.
Table tableOf(const PageSource& pages, const CatalogEntry& entry, const TableDefinition& def);

} // namespace jet
