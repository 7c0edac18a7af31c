#pragma once

#include "jet/Database.h"
#include "jet/FileImage.h"
#include "jet/TableChanges.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace store {

// A data file ready to be written, with the check that it decodes back to
// what it was made from.
class NextFile
{
public:
    // Encoded whole from `contents`; the check decodes the whole file.
    explicit NextFile(jet::Database contents);
    // Written from `previous`, a file known to decode to the contents it was
    // made from, and the changes since; the check decodes what changed and
    // compares the rest as bytes. Tables the previous file lacks are
    // `added` after its own (without rows: their changes put in every row).
    // `previous` must outlive this.
    NextFile(const jet::FileImage& previous, std::vector<jet::TableChanges> changes,
             std::vector<jet::Table> added = {});

    std::span<const std::uint8_t> bytes() const { return m_file.bytes(); }
    // Empty when the bytes decode to what they were made from; otherwise
    // where they first differ. Throws jet::Error when they do not decode.
    std::string firstDifference() const;
    // The file, to keep once it is written.
    jet::FileImage takeFile() && { return std::move(m_file); }

private:
    std::optional<jet::Database> m_contents;
    const jet::FileImage* m_previous = nullptr;
    std::vector<jet::TableChanges> m_changes;
    std::vector<jet::Table> m_added;
    jet::FileImage m_file;
};

} // namespace store
