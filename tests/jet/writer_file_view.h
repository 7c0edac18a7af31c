#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace writertest {

// Page-level reading of a written file, independent of the project's reader,
// for checking the structures that readers do not look at closely.
class FileView
{
public:
    explicit FileView(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {}

    std::uint32_t pageCount() const { return static_cast<std::uint32_t>(m_bytes.size() / 4096); }
    const std::uint8_t* page(std::uint32_t number) const
    {
        return m_bytes.data() + std::size_t(number) * 4096;
    }

    // First pages of all table definitions (continuation pages left out).
    std::vector<std::uint32_t> definitionPages() const;
    // The definition whose row count is `rows`; 0 when there is none.
    std::uint32_t definitionWithRowCount(std::uint32_t rows) const;
    // The definition bytes: the first page whole, then each continuation page after its header.
    std::vector<std::uint8_t> definition(std::uint32_t first) const;
    // How many pages the definition spans.
    std::size_t definitionPageCount(std::uint32_t first) const;

    std::span<const std::uint8_t> row(std::uint32_t pointer) const;
    // Pages a usage map lists; `type` receives the map's type byte.
    std::vector<std::uint32_t> mapPages(std::uint32_t pointer, int* type = nullptr) const;
    // Data pages whose owner field is `owner`.
    std::vector<std::uint32_t> pagesOwnedBy(std::uint32_t owner) const;

private:
    const std::vector<std::uint8_t>& m_bytes;
};

// Every data page's header agrees with its rows (row count, free space,
// descending offsets ending at the page end, row limits), every definition's
// free-space fields and length agree with its bytes, and the file-wide map
// marks exactly the file's pages as used.
void expectConsistentPages(const FileView& file);

} // namespace writertest
