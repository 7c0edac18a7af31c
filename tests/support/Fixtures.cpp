#include "Fixtures.h"

#include "ChildProcess.h"

#include "store/RegularFile.h"

namespace testsupport {

std::filesystem::path fixturesDir()
{
#ifdef VELMORA_SHARED_DIR
    const std::filesystem::path dir = std::filesystem::path(VELMORA_SHARED_DIR) / "jet-fixtures";
    if (std::filesystem::is_directory(dir))
        return dir;
#endif
    return {};
}

std::vector<std::uint8_t> readBytes(const std::filesystem::path& path)
{
    return store::readRegularFile(path).bytes;
}

CommandResult run(const std::string& command)
{
    // In the C.UTF-8 locale: mdbtools convert names to the locale's encoding.
    const velmora::test::ProgramResult result =
        velmora::test::runProgram({"/bin/sh", "-c", command + " 2>&1"});
    return {result.out, result.exitCode};
}

std::string shellQuoted(const std::filesystem::path& path)
{
    std::string out = "'";
    for (const char c : path.string())
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::vector<std::vector<std::string>> parseCsv(const std::string& text)
{
    std::vector<std::vector<std::string>> records;
    std::vector<std::string> record;
    std::string field;
    bool inQuotes = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inQuotes) {
            if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
                field += '"';
                ++i;
            } else if (c == '"') {
                inQuotes = false;
            } else {
                field += c;
            }
        } else if (c == '"') {
            inQuotes = true;
        } else if (c == ',') {
            record.push_back(std::move(field));
            field.clear();
        } else if (c == '\n') {
            record.push_back(std::move(field));
            field.clear();
            records.push_back(std::move(record));
            record.clear();
        } else {
            field += c;
        }
    }
    if (!field.empty() || !record.empty()) {
        record.push_back(std::move(field));
        records.push_back(std::move(record));
    }
    return records;
}

} // namespace testsupport
