#include "PageBuffer.h"

#include "Error.h"
#include "HugePages.h"

#include <algorithm>

namespace jet::writer {

PageBuffer::PageBuffer(std::size_t expectedPages)
{
    m_bytes.reserve(std::min<std::size_t>(expectedPages, kMaxPages) * kPageSize);
    preferHugePages(m_bytes.data(), m_bytes.capacity());
}

std::uint32_t PageBuffer::nextNumber() const
{
    const std::uint32_t number = pageCount();
    if (number >= kMaxPages)
        throw Error(ErrorCode::CannotWrite, "The data does not fit into a database file of 2 GB.",
                    Reason::FileTooLarge);
    return number;
}

std::uint32_t PageBuffer::append()
{
    const std::uint32_t number = nextNumber();
    m_bytes.resize(m_bytes.size() + kPageSize);
    return number;
}

std::uint32_t PageBuffer::appendCopy(const std::uint8_t* page)
{
    const std::uint32_t number = nextNumber();
    m_bytes.insert(m_bytes.end(), page, page + kPageSize);
    return number;
}

} // namespace jet::writer
