#include "PageBuffer.h"

#include "Error.h"

#include <algorithm>

namespace jet::writer {

PageBuffer::PageBuffer(std::size_t expectedPages)
{
    m_bytes.reserve(std::min<std::size_t>(expectedPages, kMaxPages) * kPageSize);
}

std::uint32_t PageBuffer::append()
{
    const std::uint32_t number = pageCount();
    if (number >= kMaxPages)
        throw Error(ErrorCode::CannotWrite, "The data does not fit into a database file of 2 GB.",
                    Reason::FileTooLarge);
    m_bytes.resize(m_bytes.size() + kPageSize);
    return number;
}

} // namespace jet::writer
