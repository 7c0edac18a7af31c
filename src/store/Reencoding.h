#pragma once

#include "jet/Database.h"
#include "jet/FileImage.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

namespace store {

// A file being loaded, encoded again by this writer as its rows come in, to
// learn whether it is exactly the file the writer makes of them. The rows
// are encoded on one thread; the loading asks on another which rows the
// encoding is done with, to let go of them, and what came out.
class Reencoding
{
public:
    // `contents` and `file` must outlive it: the file's decoded tables, whose
    // rows may still be coming in, and its bytes.
    Reencoding(const jet::Database& contents, std::span<const std::uint8_t> file);
    ~Reencoding();

    // The rows of `table` before `rows` are in, and all of them when
    // `whole`; tables come in order. Once the last table is whole, the
    // encoding is compared with the file. A value this writer cannot store
    // ends the encoding: the file is not its own then.
    void rowsIn(std::size_t table, std::size_t rows, bool whole) noexcept;
    // Every table is whole: encodes them all.
    void allIn() noexcept;
    // How many of the first rows of `table` the encoding is done with.
    std::size_t rowsDone(std::size_t table) const;
    // Whether it is done with every row.
    bool done() const;
    // Once done: the encoding, when it is exactly the file and the next file
    // can be written from it.
    std::optional<jet::FileImage> take();

private:
    void reach(std::size_t table, std::size_t rows);

    const jet::Database& m_contents;
    std::span<const std::uint8_t> m_file;
    std::unique_ptr<jet::FileImageBuilder> m_builder;
    mutable std::mutex m_mutex; // over what the loading reads: the progress and the result
    std::optional<jet::FileImage> m_encoded;
    std::size_t m_table = 0; // being encoded
    std::size_t m_rows = 0;  // of it that are
};

} // namespace store
