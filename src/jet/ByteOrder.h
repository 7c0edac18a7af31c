#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

// Little-endian access to raw file bytes. Callers check bounds before reading.
namespace jet::le {

inline std::uint16_t u16(const std::uint8_t* p)
{
    return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}
inline std::uint32_t u32(const std::uint8_t* p)
{
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}
inline std::uint64_t u64(const std::uint8_t* p)
{
    return static_cast<std::uint64_t>(u32(p)) | (static_cast<std::uint64_t>(u32(p + 4)) << 32);
}
inline double f64(const std::uint8_t* p)
{
    const std::uint64_t bits = u64(p);
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}
inline float f32(const std::uint8_t* p)
{
    const std::uint32_t bits = u32(p);
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

inline void put16(std::uint8_t* p, std::uint16_t v)
{
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}
inline void put32(std::uint8_t* p, std::uint32_t v)
{
    put16(p, static_cast<std::uint16_t>(v));
    put16(p + 2, static_cast<std::uint16_t>(v >> 16));
}
inline void put64(std::uint8_t* p, std::uint64_t v)
{
    put32(p, static_cast<std::uint32_t>(v));
    put32(p + 4, static_cast<std::uint32_t>(v >> 32));
}
inline void putF64(std::uint8_t* p, double d)
{
    std::uint64_t bits;
    std::memcpy(&bits, &d, sizeof d);
    put64(p, bits);
}
inline void putF32(std::uint8_t* p, float f)
{
    std::uint32_t bits;
    std::memcpy(&bits, &f, sizeof f);
    put32(p, bits);
}

} // namespace jet::le
