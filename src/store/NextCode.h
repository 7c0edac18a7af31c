#pragma once

#include "QuerySource.h"

#include <QString>

#include <vector>

namespace store {

// A column that holds the codes of one catalogue: the catalogue's own code
// column, or a column of a table that refers to it. Names of the schema's own
// tables and columns, put into the statement as they stand.
struct CodeColumn
{
    QString table;
    QString column;
};

// The code a new catalogue entry gets: 1 + the largest code found in any of
// `columns` (1 when they hold none). Looking at the tables that refer to the
// catalogue as well means a new entry never takes over the operations left
// behind by a deleted one. Run it in the transaction that inserts the entry,
// so no other copy of the program can take the same code meanwhile.
qlonglong nextCode(QuerySource& source, const std::vector<CodeColumn>& columns);

} // namespace store
