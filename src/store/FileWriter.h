#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

namespace store {

// Puts bytes in place of a file. Every save and copy of the program uses
// atomicWriter(); tests hand in writers that fail.
using FileWriter = std::function<void(const std::filesystem::path&, std::span<const std::uint8_t>)>;

// writeFileAtomically with the system's calls.
FileWriter atomicWriter();

} // namespace store
