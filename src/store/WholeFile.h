#pragma once

#include "CheckedFile.h"
#include "DataFile.h"
#include "FileWriter.h"

#include <filesystem>

namespace store {

class Store;

// The data file of a Store taken as a whole: copied for a backup, or replaced
// by another file for a restore. Both hold the store's lock file while they
// work, so no handler of this or another Velmora process is inside a
// transaction meanwhile. The store works on a replaced file's contents as
// they were checked, without reading the file again.
class WholeFile
{
public:
    // Tests hand in a `writer` that makes writes fail.
    explicit WholeFile(Store& store, FileWriter writer = atomicWriter());

    // Writes the data file's bytes to `copy` atomically (a failure or a crash
    // leaves the old copy or the new one), when they are a sound data file:
    // damage is never copied; the file the store has just written and
    // checked needs no second decoding to know that. Throws StoreError about the data file (Locked,
    // LockUnusable, Missing, Unreadable, WrongPassword, Damaged), or
    // CannotWrite naming `copy` with the cause when writing it fails.
    void copyTo(const std::filesystem::path& copy) const;

    // Reads `candidate` and judges it as the data file is judged when it is
    // read; damage, or contents the store cannot load, refuse it. Throws
    // StoreError naming the candidate: Missing, Unreadable, WrongPassword or
    // Damaged, each with its cause(). The rows of the tables named in
    // `countedOnly` are checked and counted as loading them would, but they
    // are not loaded: the contents then hold those tables empty.
    static CheckedFile check(const std::filesystem::path& candidate,
                             std::vector<std::u16string> countedOnly = {});
    // The same for a file to take the data file's place: when it differs
    // from the data file the store holds only in rows, the store takes
    // those rows in at once, uncommitted, instead of loading the whole file.
    CheckedFile checkToReplace(const std::filesystem::path& candidate);

    // Puts a checked file in place of the data file, atomically; a link is
    // followed, and the store takes over its checked contents. A
    // write-protected data file is left as it is. Throws StoreError: Locked,
    // LockUnusable, ReadOnly or CannotWrite.
    void replaceWith(CheckedFile file) const;

private:
    static CheckedFile checked(const std::filesystem::path& candidate, const DataFile& file,
                               FileContents contents, std::vector<std::u16string> countedOnly = {});

    Store& m_store;
    std::filesystem::path m_path;
    FileWriter m_writer;
};

} // namespace store
