#pragma once

#include <stdexcept>

namespace velmora::tool {

// A failure the tool describes in its own words; its text is shown as it is.
class ToolError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace velmora::tool
