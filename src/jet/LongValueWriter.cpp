#include "LongValueWriter.h"

#include "ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace jet::writer {

namespace {

constexpr std::size_t kMaxSingleRow = 4076;
constexpr std::size_t kChainChunk = 4072;
constexpr std::uint32_t kLvalOwner = 0x4C41564C; // the bytes "LVAL"

} // namespace

LongValueWriter::LongValueWriter(PageBuffer& file) : m_packer(file, kLvalOwner) {}

LongValueRef LongValueWriter::store(std::span<const std::uint8_t> data)
{
    const auto length = static_cast<std::uint32_t>(data.size());
    if (data.size() <= kMaxSingleRow) {
        const RowPacker::Placed row = m_packer.add(data.size());
        std::memcpy(row.bytes, data.data(), data.size());
        return {length | kSingleRowLongValue, row.pointer};
    }
    // Written from the last chunk back, so that each row already knows where
    // the next one is.
    const std::size_t chunks = (data.size() + kChainChunk - 1) / kChainChunk;
    std::uint32_t next = 0;
    for (std::size_t k = chunks; k-- > 0;) {
        const std::size_t begin = k * kChainChunk;
        const std::size_t bytes = std::min(kChainChunk, data.size() - begin);
        const RowPacker::Placed row = m_packer.add(4 + bytes);
        le::put32(row.bytes, next);
        std::memcpy(row.bytes + 4, data.data() + begin, bytes);
        next = row.pointer;
    }
    return {length, next};
}

} // namespace jet::writer
