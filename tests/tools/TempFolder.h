#pragma once

#include <filesystem>

namespace velmora::test {

// A fresh folder under the system's temporary folder, removed with its contents.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::filesystem::path operator/(const char* name) const { return m_path / name; }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace velmora::test
