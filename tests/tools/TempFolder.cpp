#include "TempFolder.h"

#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace velmora::test {

TempFolder::TempFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "velmora-tools-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot create a temporary folder");
    m_path = pattern;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace velmora::test
