#include "CheckedFile.h"

#include "Snapshot.h"
#include "SqliteImage.h"

#include "jet/Database.h"

namespace store {

CheckedFile::CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents)
    : m_bytes(std::move(bytes)), m_contents(std::make_unique<Snapshot>(std::move(contents), m_bytes))
{}

CheckedFile::CheckedFile(CheckedFile&&) noexcept = default;
CheckedFile& CheckedFile::operator=(CheckedFile&&) noexcept = default;
CheckedFile::~CheckedFile() = default;

std::span<const std::uint8_t> CheckedFile::bytes() const
{
    const jet::FileImage* kept = m_contents->image().lastFile();
    return kept ? kept->bytes() : std::span<const std::uint8_t>(m_bytes);
}

QuerySource& CheckedFile::contents() const
{
    return *m_contents;
}

std::unique_ptr<SqliteImage> CheckedFile::releaseImage() &&
{
    return std::move(*m_contents).release();
}

} // namespace store
