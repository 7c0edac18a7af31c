#pragma once

#include <QString>

namespace velmora::test {

// mdb-export reads every table of the data file at `path` as our reader does:
// the same CSV, cell for cell. Fails the running Qt test otherwise.
void compareWithMdbExport(const QString& path);

} // namespace velmora::test
