#include "CheckedFile.h"

#include "Snapshot.h"

#include "jet/Database.h"

namespace store {

CheckedFile::CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents)
    : m_bytes(std::move(bytes)), m_contents(std::make_unique<Snapshot>(std::move(contents)))
{}

CheckedFile::CheckedFile(CheckedFile&&) noexcept = default;
CheckedFile::~CheckedFile() = default;

QuerySource& CheckedFile::contents() const
{
    return *m_contents;
}

} // namespace store
