#include "WholeFile.h"

#include "DataFile.h"
#include "FailureCause.h"
#include "FileError.h"
#include "FileLock.h"
#include "FileSignature.h"
#include "Schema.h"
#include "SqliteImage.h"
#include "Store.h"
#include "StoreError.h"
#include "StoreTexts.h"

namespace store {

namespace fs = std::filesystem;
using Kind = StoreError::Kind;

namespace {

QString shown(const fs::path& path)
{
    return QString::fromStdString(path.string());
}

// Runs `write`, turning its failure into CannotWrite naming `path`.
template <typename Write> void writing(const fs::path& path, Write write)
{
    try {
        write();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw StoreError::forFile(Kind::CannotWrite, shown(path), describeFailure(e));
    }
}

} // namespace

WholeFile::WholeFile(Store& store, FileWriter writer)
    : m_store(store), m_path(store.dataFilePath().toStdString()), m_writer(std::move(writer))
{}

void WholeFile::copyTo(const fs::path& copy) const
{
    FileLock lock(m_path);
    lock.take();
    const DataFile file(m_path, kFilePassword);
    const FileContents contents = file.read();
    if (!m_store.isCheckedFile(contents.bytes))
        if (const LoadedFile loaded = file.decode(contents); loaded.damage)
            throw *loaded.damage;
    writing(copy, [&] { m_writer(copy, contents.bytes, {}); });
}

CheckedFile WholeFile::check(const fs::path& candidate, std::vector<std::u16string> countedOnly)
{
    const DataFile file(candidate, kFilePassword);
    return checked(candidate, file, file.read(), std::move(countedOnly));
}

CheckedFile WholeFile::checkToReplace(const fs::path& candidate)
{
    const DataFile file(candidate, kFilePassword);
    FileContents contents = file.read();
    // The store's contents stand for the data file only while no handler
    // works on them and the file on disk is the one it last read or wrote.
    if (m_store.m_depth == 0 && !m_store.keptBytes().empty() && m_store.m_image->beginTaking(contents.bytes))
        return CheckedFile(std::move(contents.bytes), *m_store.m_image);
    return checked(candidate, file, std::move(contents));
}

CheckedFile WholeFile::checked(const fs::path& candidate, const DataFile& file, FileContents contents,
                               std::vector<std::u16string> countedOnly)
{
    LoadedFile loaded = file.decode(contents);
    if (loaded.damage)
        throw *loaded.damage;
    try {
        return CheckedFile(std::move(contents.bytes), std::move(loaded.database), std::move(countedOnly));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        throw StoreError::forFile(Kind::Damaged, shown(candidate),
                                  QString::fromUtf8(texts::causeValueNotAccepted));
    }
}

void WholeFile::replaceWith(CheckedFile file) const
{
    FileLock lock(m_path);
    lock.take();
    if (isWriteProtected(m_path))
        throw StoreError::forFile(Kind::ReadOnly, shown(m_path));
    writing(m_path, [&] { m_writer(m_path, file.bytes(), {}); });
    const bool rowsTaken = file.takingImage() != nullptr;
    if (rowsTaken) {
        try {
            file.takingImage()->finishTaking();
            file.taken();
        } catch (const std::exception&) {
            // The file is in place, the image gave its rows back: with no
            // signature of it the next transaction reads the file.
            m_store.adopt(nullptr, FileSignature{});
            return;
        }
    }
    // Without the new file's signature the store simply reads the file again.
    try {
        m_store.adopt(rowsTaken ? nullptr : std::move(file).releaseImage(), FileSignature::of(m_path));
    } catch (const FileError&) {
    }
}

} // namespace store
