#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora::tool {

// The whole file; jet::Error(FileNotFound) when it cannot be read.
std::vector<std::uint8_t> readBytes(const std::filesystem::path& path);

// Throws std::runtime_error when something already lies at `path`: the tool
// never overwrites a data file.
void refuseExisting(const std::filesystem::path& path);

// The current local date and time as a Jet date.
double jetNow();

// What went wrong, for a message that names the file: the cause in words, then
// the codec's own detail.
std::string describeFailure(const std::exception& error);

} // namespace velmora::tool
