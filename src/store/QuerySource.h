#pragma once

#include "Row.h"

#include <QString>
#include <QVariantList>

namespace store {

// Something the program's reading statements can run on: a handler's open
// transaction on the data file, or a snapshot of a file's bytes.
class QuerySource
{
public:
    virtual ~QuerySource() = default;

    // The rows of one SELECT with its values bound to the ? in it.
    virtual Rows query(const QString& sql, const QVariantList& params = {}) = 0;
};

} // namespace store
