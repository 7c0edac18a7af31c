#include "CommandLine.h"

#include "jet/Unicode.h"
#include "store/Schema.h"

#include <algorithm>
#include <stdexcept>

namespace velmora::tool {

namespace {

struct CommandShape
{
    const char* name;
    std::size_t arguments;
    std::vector<std::string> options;
    std::vector<std::string> requiredOptions;
};

const std::vector<CommandShape>& commandShapes()
{
    static const std::vector<CommandShape> shapes = {
        {"new", 1, {}, {}},
        {"sample", 1, {"years", "ops-per-month", "seed", "end"}, {"years", "ops-per-month"}},
        {"tables", 1, {}, {}},
        {"export", 2, {}, {}},
    };
    return shapes;
}

const CommandShape& shapeOf(const std::string& command)
{
    for (const CommandShape& shape : commandShapes())
        if (command == shape.name)
            return shape;
    throw std::invalid_argument("unknown command '" + command + "'");
}

void checkShape(const CommandLine& line)
{
    if (line.command.empty())
        throw std::invalid_argument("no command given");
    const CommandShape& shape = shapeOf(line.command);
    if (line.arguments.size() != shape.arguments)
        throw std::invalid_argument("'" + line.command + "' takes " + std::to_string(shape.arguments) +
                                    (shape.arguments == 1 ? " argument" : " arguments"));
    for (const auto& [name, value] : line.options)
        if (std::find(shape.options.begin(), shape.options.end(), name) == shape.options.end())
            throw std::invalid_argument("'" + line.command + "' has no option --" + name);
    for (const std::string& name : shape.requiredOptions)
        if (!line.options.contains(name))
            throw std::invalid_argument("'" + line.command + "' needs --" + name);
}

} // namespace

CommandLine parseCommandLine(int argc, const char* const* argv)
{
    CommandLine line;
    line.password = store::kFilePassword;
    bool optionsEnded = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (optionsEnded || arg.size() < 2 || arg.compare(0, 2, "--") != 0) {
            (line.command.empty() ? line.command : line.arguments.emplace_back()) = arg;
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        if (arg == "--help") {
            line.help = true;
            return line;
        }
        const std::size_t equals = arg.find('=');
        const std::string name = arg.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
        std::string value;
        if (equals != std::string::npos)
            value = arg.substr(equals + 1);
        else if (i + 1 < argc)
            value = argv[++i];
        else
            throw std::invalid_argument("option --" + name + " needs a value");
        if (name == "password")
            line.password = jet::fromUtf8(value);
        else if (!line.options.emplace(name, value).second)
            throw std::invalid_argument("option --" + name + " given twice");
    }
    checkShape(line);
    return line;
}

const char* usageText()
{
    return R"(Usage: velmora-data [--password P] COMMAND FILE [ARGUMENTS]

Creates and inspects Velmora data files (Jet 4 databases).

Commands:
  new FILE                  write the prepared empty data file
  sample FILE --years N --ops-per-month M [--seed S] [--end YYYY-MM-DD]
                            write a household history of N years with M bank
                            and expense operations a month, ending on the
                            given day (default today); at most 1000000
                            operations; the same seed gives the same file
  tables FILE               list the user tables, one per line
  export FILE TABLE         print the table as CSV

Options:
  --password P              the file's database password (default: Velmora's);
                            a file without a password opens with any
  --help                    show this text

new and sample never overwrite an existing file.
Exit status: 0 done, 1 the command failed, 2 bad arguments.
)";
}

} // namespace velmora::tool
