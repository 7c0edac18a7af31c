#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jet::writer {

inline constexpr std::size_t kPageSize = 4096;
inline constexpr std::size_t kDataPageHeader = 14; // type, flag, free space, owner, 4 zero bytes, row count
inline constexpr std::size_t kMaxRowsPerPage = 255;
inline constexpr std::size_t kMaxRowBytes = 4060;
inline constexpr std::uint32_t kMaxPages = 0x80000000u / kPageSize; // files stop at 2 GiB

inline std::uint32_t rowPointer(std::uint32_t page, std::size_t row)
{
    return page << 8 | static_cast<std::uint32_t>(row);
}

// The file being written: zeroed pages appended one by one into one buffer.
// Pointers into it stay valid only until the next append, so callers keep
// page numbers and ask for the bytes again.
class PageBuffer
{
public:
    explicit PageBuffer(std::size_t expectedPages);

    std::uint32_t append(); // throws CannotWrite past the 2 GiB limit
    // A page appended as a copy of `page` (kPageSize bytes), without zeroing it first.
    std::uint32_t appendCopy(const std::uint8_t* page);
    std::uint8_t* page(std::uint32_t number) { return m_bytes.data() + std::size_t(number) * kPageSize; }
    std::uint32_t pageCount() const { return static_cast<std::uint32_t>(m_bytes.size() / kPageSize); }
    std::vector<std::uint8_t> release() { return std::move(m_bytes); }

private:
    std::uint32_t nextNumber() const; // throws CannotWrite past the 2 GiB limit

    std::vector<std::uint8_t> m_bytes;
};

} // namespace jet::writer
