#include "Store.h"

#include "Transaction.h"

#include "AtomicFile.h"
#include "Copies.h"
#include "DataFile.h"
#include "FailureCause.h"
#include "FileError.h"
#include "FileLock.h"
#include "FileSaver.h"
#include "RawStatement.h"
#include "RowReader.h"
#include "Schema.h"
#include "SqlParameters.h"
#include "SqliteImage.h"
#include "StoreTexts.h"
#include "jet/ReadAhead.h"

#include <SQLiteCpp/Exception.h>

#include <QDebug>

#include <algorithm>
#include <stdexcept>

namespace store {

namespace fs = std::filesystem;
using Kind = StoreError::Kind;

namespace {

QString fromStd(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

struct Store::Files
{
    Files(const fs::path& dataFile, FileWriter writer)
        : file(dataFile, kFilePassword), lock(dataFile), writer(std::move(writer))
    {}

    DataFile file;
    FileLock lock;
    FileWriter writer;
    std::optional<FileSignature> signature;
};

Store::Store(const QString& programDir, ErrorSink* sink, FileWriter writer)
    : m_files(std::make_unique<Files>(fs::absolute(fs::path(programDir.toStdString())) / kDataFileName,
                                      std::move(writer))),
      m_sink(sink)
{}

Store::~Store()
{
    if (m_pendingCopy.valid())
        m_pendingCopy.wait();
    if (m_open)
        m_image->rollback();
}

QString Store::dataFilePath() const
{
    return m_files->file.displayPath();
}

bool Store::isCheckedFile(std::span<const std::uint8_t> bytes) const
{
    const jet::FileImage* file = m_image && !m_damage ? m_image->lastFile() : nullptr;
    return file && file->shape().password == kFilePassword && schemaMismatch(file->shape()).empty() &&
           std::ranges::equal(file->bytes(), bytes);
}

void Store::keepCopies(std::function<QDateTime()> now)
{
    m_copyClock = std::move(now);
}

std::span<const std::uint8_t> Store::keptBytes() const
{
    const jet::FileImage* file = m_image && !m_damage ? m_image->lastFile() : nullptr;
    if (!file || !m_files->signature)
        return {};
    try {
        if (!m_open && FileSignature::of(m_files->file.path()) != *m_files->signature)
            return {};
    } catch (const FileError&) {
        return {};
    }
    return file->bytes();
}

const FileWriter& Store::writer() const
{
    return m_files->writer;
}

// The data file is only ever replaced, never changed in place: a second name
// for it keeps today's contents as a written copy would, without the write.
bool Store::linkDataFileAs(const fs::path& copy)
{
    if (!m_files->signature)
        return false;
    try {
        linkDurably(m_files->file.path(), copy);
        if (adoptInodeTime(copy))
            return true;
        std::error_code ignored; // the name went to another file than the one held
        fs::remove(copy, ignored);
    } catch (const FileError&) {
        // No name is left.
    }
    adoptInodeTime(m_files->file.path()); // a name made and removed again
    return false;
}

// A name made or removed changes a file's inode time. True when `path` is the
// file whose signature the store holds but for that time, which it then takes.
bool Store::adoptInodeTime(const fs::path& path)
{
    try {
        const FileSignature now = FileSignature::of(path);
        FileSignature held = *m_files->signature;
        held.changedNs = now.changedNs;
        if (now != held)
            return false;
        m_files->signature = now;
        return true;
    } catch (const FileError&) {
        return false;
    }
}

bool Store::goOnWithoutCopy(const StoreError& error)
{
    if (m_sink)
        return m_sink->goOnWithoutCopy(error);
    qWarning().noquote() << error.message();
    return true;
}

void Store::adopt(std::unique_ptr<SqliteImage> image, const FileSignature& written)
{
    if (m_depth > 0)
        return;
    if (image)
        m_image = std::move(image);
    m_damage.reset();
    m_files->signature = written;
    ++m_generation;
    ++m_readings;
}

void Store::enter()
{
    if (m_depth++ > 0)
        return;
    try {
        // Damage is told once per reading of the file; the handler goes on, reading only.
        if (open() && m_damage)
            report(*m_damage);
    } catch (const StoreError& e) {
        fail(e);
    } catch (const std::exception& e) {
        fail(StoreError::forFile(Kind::Unreadable, dataFilePath(), describeFailure(e)));
    }
}

StoreResult Store::leave(bool commit, long long changesAtEnter)
{
    if (m_depth <= 0)
        throw std::logic_error("Store: a transaction ended twice");
    if (--m_depth == 0)
        return finish(commit);
    // An inner scope that changed rows and did not commit spoils the whole transaction.
    if (!commit && changeCount() != changesAtEnter)
        fail(StoreError(Kind::Statement, fromStd(texts::changesAbandoned)), false);
    return m_failure ? StoreResult(*m_failure) : StoreResult();
}

long long Store::changeCount() const
{
    return m_open ? m_image->totalChanges() : 0;
}

bool Store::open()
{
    m_files->lock.take();
    bool readAnew = false;
    try {
        readAnew = refresh();
        m_image->begin();
    } catch (...) {
        m_files->lock.release();
        throw;
    }
    m_changesAtOpen = m_image->totalChanges();
    m_open = true;
    return readAnew;
}

bool Store::refresh()
{
    FileSignature current;
    try {
        current = FileSignature::of(m_files->file.path());
    } catch (const FileError& e) {
        throw readFailure(dataFilePath(), e);
    }
    if (m_image && m_files->signature == current)
        return false;
    m_image.reset();
    m_files->signature.reset();
    m_damage.reset();
    m_files->file.removeStaleTemporaries();
    FileContents contents = m_files->file.read();
    if (!loadWhileDecoding(contents)) {
        LoadedFile loaded = m_files->file.decode(contents);
        m_damage = std::move(loaded.damage);
        try {
            m_image = std::make_unique<SqliteImage>(std::move(loaded.database), contents.bytes);
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            if (!m_damage)
                m_damage =
                    StoreError::forFile(Kind::Damaged, dataFilePath(), fromStd(texts::causeValueNotAccepted));
            jet::Database empty = withSchemaTables({});
            empty.password = kFilePassword;
            m_image = std::make_unique<SqliteImage>(std::move(empty));
        }
    }
    m_files->signature = FileSignature::fromStat(contents.status);
    ++m_generation;
    ++m_readings;
    return true;
}

// A sound file goes into SQLite while it is still being decoded. False, with
// nothing loaded, for a file that is not sound as far as that shows: it is
// judged whole then, the same way as before.
bool Store::loadWhileDecoding(FileContents& contents)
{
    const std::unique_ptr<jet::ReadAhead> reading = m_files->file.readAhead(contents);
    if (!reading || !SqliteImage::loadsWhileDecoding(reading->database()))
        return false;
    try {
        m_image = std::make_unique<SqliteImage>(*reading, contents.bytes);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return false; // damage, or a value the store refuses: the file's bytes are still there
    }
    return true;
}

StoreResult Store::finish(bool commit)
{
    if (m_open) {
        try {
            if (commit && !m_failure)
                save();
        } catch (const StoreError& e) {
            fail(e);
        } catch (const std::exception& e) {
            m_files->signature.reset();
            fail(StoreError::forFile(Kind::CannotWrite, dataFilePath(), describeFailure(e)));
        }
        if (m_failure || !commit)
            m_image->rollback();
        m_open = false;
        m_files->lock.release();
    }
    StoreResult result = m_failure ? StoreResult(*m_failure) : StoreResult();
    m_failure.reset();
    m_reported.clear();
    m_copiedInTransaction = false;
    return result;
}

void Store::fail(const StoreError& error, bool show)
{
    if (m_failure)
        return;
    m_failure = error;
    if (show)
        report(error);
}

void Store::report(const StoreError& error)
{
    // A handler says one thing once: a damaged file found at its start is
    // not told again when its save is refused.
    if (m_reported.contains(error.message()))
        return;
    m_reported.append(error.message());
    if (m_sink)
        m_sink->storeFailure(error);
    else
        qWarning().noquote() << error.message();
}

void Store::reportEngineError(int number, const QString& description)
{
    if (!m_failure)
        m_failure = StoreError::statement(number, description);
    if (m_sink)
        m_sink->engineError(number, description);
    else
        qWarning().noquote() << engineErrorText(number, description);
}

void Store::save()
{
    if (m_image->totalChanges() == m_changesAtOpen) {
        m_image->commit();
        return;
    }
    // A damaged file is never written over: what was read of it is not all it holds.
    if (m_damage)
        throw *m_damage;
    if (isWriteProtected(m_files->file.path()))
        throw StoreError::forFile(Kind::ReadOnly, dataFilePath());
    // The user saw the copy's failure in the question and chose to stop.
    std::optional<PlannedCopy> dayCopy;
    if (std::optional<StoreError> declined = Copies(*this).beforeFirstChangeOfDay(dayCopy))
        return fail(*declined, false);
    try {
        const NextFile* next = nullptr;
        try {
            next = &m_image->nextFile();
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& e) {
            throw StoreError::forFile(Kind::CannotWrite, dataFilePath(), describeFailure(e));
        }
        m_files->signature = FileSaver(m_files->file, m_files->writer).save(*next, *m_files->signature);
    } catch (const StoreError&) {
        // The file may be anything now (a failed folder sync comes after the
        // rename): the next transaction reads it again.
        m_files->signature.reset();
        throw;
    }
    std::optional<jet::FileImage> replaced;
    try {
        replaced = m_image->commit();
    } catch (const SQLite::Exception&) {
        m_files->signature.reset();
    }
    ++m_generation;
    // The file as it was before this save, written beside the program so
    // that it does not compete with the save's own sync.
    if (dayCopy && replaced)
        Copies(*this).writeLater(*dayCopy, std::move(*replaced).release());
}

bool Store::runStatement(const QString& sql, const QVariantList& params, bool setsAlike)
{
    if (!m_open || m_failure)
        return false;
    try {
        sqlite3_stmt* statement = m_image->statement(sql.toStdString());
        const StatementScope scope(statement);
        sql::bindParameters(statement, params);
        if (setsAlike ? m_image->updateAlike(statement) : stepRow(statement))
            throw SQLite::Exception("a statement that gives rows was run as one that writes");
        return true;
    } catch (const SQLite::Exception& e) {
        reportEngineError(e.getExtendedErrorCode() >= 0 ? e.getExtendedErrorCode() : e.getErrorCode(),
                          fromStd(e.what()));
        return false;
    }
}

bool Store::runQuery(const QString& sql, const QVariantList& params, const RowHandler& each)
{
    if (!m_open)
        return false;
    try {
        readRows(m_image->statement(sql.toStdString()), params, each);
        return true;
    } catch (const SQLite::Exception& e) {
        reportEngineError(e.getExtendedErrorCode() >= 0 ? e.getExtendedErrorCode() : e.getErrorCode(),
                          fromStd(e.what()));
        return false;
    }
}

Rows Store::runQuery(const QString& sql, const QVariantList& params)
{
    Rows rows;
    return runQuery(sql, params, keepingRows(rows)) ? std::move(rows) : Rows();
}

} // namespace store
