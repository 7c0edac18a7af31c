#pragma once

#include "ToolError.h"
#include <cstdint>

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::tool {

// The whole file; store::FileError when it cannot be read or is no regular
// file (a FIFO, device or folder is never opened).
std::vector<std::uint8_t> readBytes(const std::filesystem::path& path);

// Throws ToolError when something already lies at `path`: the tool never
// overwrites a data file.
void refuseExisting(const std::filesystem::path& path);

// The current local date and time as a Jet date.
double jetNow();

// What went wrong, for a message that names the file: the cause in words, then
// the codec's own detail; never a library's raw text.
std::string describeFailure(const std::exception& error);

} // namespace velmora::tool
