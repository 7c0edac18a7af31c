#pragma once

#include "ToolError.h"

#include <filesystem>
#include <string>

namespace velmora::tool {

// Throws ToolError when something already lies at `path`: the tool never
// overwrites a data file.
void refuseExisting(const std::filesystem::path& path);

// The current local date and time as a Jet date.
double jetNow();

// What went wrong, for a message that names the file: the cause in words, then
// the codec's own detail; never a library's raw text.
std::string describeFailure(const std::exception& error);

} // namespace velmora::tool
