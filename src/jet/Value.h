#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace jet {

// Absent value of a column (SQL NULL).
struct Null
{
    bool operator==(const Null&) const = default;
};

// Exact money: the stored 64-bit integer, amount × 10 000.
struct Currency
{
    std::int64_t units = 0;
    bool operator==(const Currency&) const = default;
};

// Jet's date/time: days since 1899-12-30 00:00; for negative values the time
// of day is stored away from zero (see docs/jet-format.md).
struct DateTime
{
    double days = 0;
    bool operator==(const DateTime&) const = default;
};

// A Replication ID in the file's byte order (first three groups little-endian).
struct Guid
{
    std::array<std::uint8_t, 16> bytes{};
    bool operator==(const Guid&) const = default;
};

using Bytes = std::vector<std::uint8_t>;

// One cell. Byte, Integer and Long columns all hold std::int32_t; Text and Memo
// hold UTF-16 text; Binary and OLE hold Bytes.
using Value =
    std::variant<Null, bool, std::int32_t, Currency, float, double, DateTime, std::u16string, Bytes, Guid>;

inline bool isNull(const Value& v)
{
    return std::holds_alternative<Null>(v);
}

} // namespace jet
