#include "SampleData.h"

#include "SampleGenerator.h"

#include <ctime>

namespace velmora {

std::chrono::sys_days today()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    using namespace std::chrono;
    return sys_days{year{local.tm_year + 1900} / month{static_cast<unsigned>(local.tm_mon + 1)} /
                    day{static_cast<unsigned>(local.tm_mday)}};
}

SampleHistory makeSampleHistory(const SampleOptions& options)
{
    return sample::SampleGenerator(options).run();
}

jet::Database makeSampleDatabase(const SampleOptions& options)
{
    return makeSampleHistory(options).database;
}

} // namespace velmora
