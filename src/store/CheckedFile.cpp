#include "CheckedFile.h"

#include "Snapshot.h"
#include "SqliteImage.h"

#include "jet/Database.h"

#include <utility>

namespace store {

CheckedFile::CheckedFile(std::vector<std::uint8_t> bytes, jet::Database contents,
                         std::vector<std::u16string> countedOnly)
    : m_bytes(std::move(bytes)),
      m_contents(countedOnly.empty()
                     ? std::make_unique<Snapshot>(std::move(contents), m_bytes)
                     : std::make_unique<Snapshot>(std::move(contents), std::move(countedOnly)))
{}

std::size_t CheckedFile::countedRows() const
{
    return m_contents->image().countedRows();
}

CheckedFile::CheckedFile(std::vector<std::uint8_t> bytes, SqliteImage& image)
    : m_bytes(std::move(bytes)), m_contents(std::make_unique<Snapshot>(image)), m_taking(&image)
{}

CheckedFile::CheckedFile(CheckedFile&& other) noexcept
    : m_bytes(std::move(other.m_bytes)), m_contents(std::move(other.m_contents)),
      m_taking(std::exchange(other.m_taking, nullptr))
{}

CheckedFile& CheckedFile::operator=(CheckedFile&& other) noexcept
{
    if (this != &other) {
        if (m_taking)
            m_taking->rollback();
        m_bytes = std::move(other.m_bytes);
        m_contents = std::move(other.m_contents);
        m_taking = std::exchange(other.m_taking, nullptr);
    }
    return *this;
}

CheckedFile::~CheckedFile()
{
    if (m_taking)
        m_taking->rollback();
}

std::span<const std::uint8_t> CheckedFile::bytes() const
{
    const jet::FileImage* kept = m_taking ? nullptr : m_contents->image().lastFile();
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
