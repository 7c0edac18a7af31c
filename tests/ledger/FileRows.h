#pragma once

#include <QString>
#include <QStringList>

namespace velmora::test {

// The rows of one table as our Jet reader decodes them from the data file in
// `programDir`, one text per row: values joined by " | ", money as "12.35",
// dates as yyyy-MM-dd, Null as "NULL". Throws when the file cannot be read.
QStringList fileRows(const QString& programDir, const QString& table);

} // namespace velmora::test
