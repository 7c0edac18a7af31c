#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

namespace store {

// Called by a writer once the new bytes lie durably beside the file, just
// before they replace it; what it throws stops the write and leaves the file
// as it was. Empty when there is nothing to wait for.
using BeforeReplacing = std::function<void()>;

// Puts bytes in place of a file. Every save and copy of the program uses
// atomicWriter(); tests hand in writers that fail.
using FileWriter =
    std::function<void(const std::filesystem::path&, std::span<const std::uint8_t>, const BeforeReplacing&)>;

// writeFileAtomically with the system's calls.
FileWriter atomicWriter();

} // namespace store
