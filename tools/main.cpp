#include "CommandLine.h"
#include "CreateCommands.h"
#include "FileAccess.h"
#include "ReadCommands.h"

#include <iostream>
#include <stdexcept>

using namespace velmora::tool;

namespace {

int run(const CommandLine& line)
{
    if (line.command == "new")
        return runNew(line);
    if (line.command == "sample")
        return runSample(line);
    if (line.command == "tables")
        return runTables(line, std::cout);
    return runExport(line, std::cout);
}

} // namespace

int main(int argc, char** argv)
{
    CommandLine line;
    try {
        line = parseCommandLine(argc, argv);
    } catch (const std::invalid_argument& error) {
        std::cerr << "velmora-data: " << error.what() << "\n\n" << usageText();
        return kExitUsage;
    }
    if (line.help) {
        std::cout << usageText();
        return kExitOk;
    }
    try {
        return run(line);
    } catch (const std::invalid_argument& error) {
        std::cerr << "velmora-data: " << error.what() << "\n\n" << usageText();
        return kExitUsage;
    } catch (const std::exception& error) {
        std::cerr << "velmora-data: " << line.arguments.at(0) << ": " << describeFailure(error) << '\n';
        return kExitFailure;
    }
}
