#include "CreateCommands.h"

#include "FileAccess.h"
#include "SampleData.h"

#include "jet/Writer.h"
#include "store/AtomicFile.h"
#include "store/DataFolder.h"
#include "store/Schema.h"

#include <charconv>
#include <stdexcept>

namespace velmora::tool {

namespace {

constexpr std::int64_t kMaxOperations = 1'000'000;

template <typename Number>
Number numberOption(const CommandLine& line, const std::string& name, Number low, Number high)
{
    const std::string& text = line.options.at(name);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < low || value > high)
        throw std::invalid_argument("--" + name + " must be a whole number from " + std::to_string(low) +
                                    " to " + std::to_string(high));
    return value;
}

std::chrono::sys_days dayOption(const std::string& text)
{
    using namespace std::chrono;
    int y = 0;
    unsigned m = 0, d = 0;
    char dash1 = 0, dash2 = 0, extra = 0;
    if (std::sscanf(text.c_str(), "%4d%c%2u%c%2u%c", &y, &dash1, &m, &dash2, &d, &extra) != 5 ||
        dash1 != '-' || dash2 != '-')
        throw std::invalid_argument("--end must be a date YYYY-MM-DD");
    const year_month_day date{year{y}, month{m}, day{d}};
    if (!date.ok() || y < 1900 || y > 9998)
        throw std::invalid_argument("--end must be a real date between 1900 and 9998");
    return sys_days{date};
}

SampleOptions sampleOptions(const CommandLine& line)
{
    SampleOptions options;
    options.years = numberOption(line, "years", 1, 100);
    options.opsPerMonth = numberOption<int>(line, "ops-per-month", 1, kMaxOperations);
    if (std::int64_t{12} * options.years * options.opsPerMonth > kMaxOperations)
        throw std::invalid_argument("at most " + std::to_string(kMaxOperations) +
                                    " operations: --years × 12 × --ops-per-month is too large");
    if (line.options.contains("seed"))
        options.seed = numberOption<std::uint64_t>(line, "seed", 0, UINT64_MAX);
    if (line.options.contains("end"))
        options.lastDay = dayOption(line.options.at("end"));
    return options;
}

void write(const std::filesystem::path& path, jet::Database db, const std::u16string& password)
{
    db.password = password;
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(db);
    store::writeFileAtomically(path, bytes);
}

} // namespace

int runNew(const CommandLine& line)
{
    const std::filesystem::path path = line.arguments.at(0);
    refuseExisting(path);
    store::writePreparedFile(path, line.password, jetNow());
    return kExitOk;
}

int runSample(const CommandLine& line)
{
    const SampleOptions options = sampleOptions(line);
    const std::filesystem::path path = line.arguments.at(0);
    refuseExisting(path);
    write(path, makeSampleDatabase(options), line.password);
    return kExitOk;
}

} // namespace velmora::tool
