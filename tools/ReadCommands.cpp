#include "ReadCommands.h"

#include "FileAccess.h"

#include "CsvExport.h"
#include "jet/Reader.h"
#include "jet/Unicode.h"
#include "store/RegularFile.h"

namespace velmora::tool {

int runTables(const CommandLine& line, std::ostream& out)
{
    const std::vector<std::uint8_t> bytes = store::readRegularFile(line.arguments.at(0)).bytes;
    for (const std::u16string& name : jet::tableNames(bytes, line.password))
        out << jet::toUtf8(name) << '\n';
    return kExitOk;
}

int runExport(const CommandLine& line, std::ostream& out)
{
    const std::vector<std::uint8_t> bytes = store::readRegularFile(line.arguments.at(0)).bytes;
    const jet::Database db = jet::readDatabase(bytes, line.password);
    const jet::Table* table = db.table(jet::fromUtf8(line.arguments.at(1)));
    if (!table)
        throw ToolError("no table named '" + line.arguments.at(1) + "'");
    out << velmora::exportCsv(*table);
    return kExitOk;
}

} // namespace velmora::tool
