#pragma once

#include "DataFile.h"
#include "FileSignature.h"
#include "NextFile.h"

#include "FileWriter.h"

#include <cstdint>
#include <span>

namespace store {

// The save of a changed database, encoded in memory: make sure the file on
// disk is still the one that was read, write the new one atomically, and
// decode it and compare it with what was encoded while it is being written:
// it replaces the data file only once the comparison has passed.
class FileSaver
{
public:
    FileSaver(const DataFile& file, const FileWriter& writer) : m_file(file), m_writer(writer) {}

    // Returns the signature of the new file. Throws StoreError: CannotWrite
    // when the check or the write fails, ChangedOnDisk when the file no
    // longer has the signature `expected`.
    FileSignature save(const NextFile& next, const FileSignature& expected) const;

private:
    void checkDecodesBack(const NextFile& next) const;
    void checkUnchangedOnDisk(const FileSignature& expected) const;
    FileSignature write(std::span<const std::uint8_t> bytes, const BeforeReplacing& beforeReplacing) const;

    const DataFile& m_file;
    const FileWriter& m_writer;
};

} // namespace store
