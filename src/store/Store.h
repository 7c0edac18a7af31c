#pragma once

#include "ErrorSink.h"
#include "FileWriter.h"
#include "RowView.h"
#include "StoreResult.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <span>

namespace store {

class SqliteImage;
class Transaction;
struct FileContents;
struct FileSignature;

// The program's only way to the data file velmora.mdb in the program folder.
// The file is decoded once into an in-memory SQLite database and kept there
// while it stays unchanged on disk. Everything runs in transactions (see
// Transaction): the outermost one takes the lock file beside the data file,
// re-reads the file if someone else changed it, and when it commits with
// changes writes the whole file back atomically. One thread only.
class Store
{
public:
    // Tests hand in a `writer` that makes saves fail.
    explicit Store(const QString& programDir, ErrorSink* sink = nullptr, FileWriter writer = atomicWriter());
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    QString dataFilePath() const;
    // True when `bytes` are the file this store last read or wrote and
    // checked, with the data file's password and tables: a sound data file
    // that need not be decoded again to know it.
    bool isCheckedFile(std::span<const std::uint8_t> bytes) const;
    // Grows whenever what the store shows may have changed: a save that wrote
    // rows, the file read anew (another program changed it) or a restored
    // file taken over. A change on disk is noticed at the next transaction.
    std::uint64_t generation() const { return m_generation; }
    // Grows only when the store takes contents it did not write itself: the
    // file read anew or a restored file taken over. What was done before
    // (an undo's entries, for one) may not be in the file since.
    std::uint64_t readings() const { return m_readings; }
    // From now on automatic copies of the data file are kept (see Copies),
    // made at the times `now` gives.
    void keepCopies(std::function<QDateTime()> now);

private:
    friend class Transaction;
    friend class WholeFile;
    friend class Copies;

    // The data file's bytes when the store holds exactly the file on disk;
    // empty otherwise.
    std::span<const std::uint8_t> keptBytes() const;
    const FileWriter& writer() const;
    // Makes `copy` a second name of the data file when that file is the one
    // the store holds; false, leaving nothing, when it cannot.
    bool linkDataFileAs(const std::filesystem::path& copy);
    bool adoptInodeTime(const std::filesystem::path& path);
    // Asks through the sink whether the action goes on although its copy
    // failed; without a sink it goes on and the failure is logged.
    bool goOnWithoutCopy(const StoreError& error);

    // Works on `image` from now on: the contents of the file just put in
    // place of the data file, whose signature is `written`; no image when
    // the store's own took that file's rows. Outside a transaction only;
    // inside one the file is read again at the next.
    void adopt(std::unique_ptr<SqliteImage> image, const FileSignature& written);

    void enter();
    StoreResult leave(bool commit, long long changesAtEnter);
    bool isOpen() const { return m_open; }
    bool hasFailed() const { return m_failure.has_value(); }
    long long changeCount() const;
    // Both return true when the file was read anew.
    bool open();
    bool refresh();
    bool loadWhileDecoding(FileContents& contents);
    StoreResult finish(bool commit);
    void save();
    void fail(const StoreError& error, bool show = true);
    void report(const StoreError& error);

    // `setsAlike` for an UPDATE whose SET takes only bound values.
    bool runStatement(const QString& sql, const QVariantList& params, bool setsAlike = false);
    Rows runQuery(const QString& sql, const QVariantList& params);
    bool runQuery(const QString& sql, const QVariantList& params, const RowHandler& each);
    void reportEngineError(int number, const QString& description);

    // The data file, its lock, the writer and the signature of the file the
    // image was read from or saved to.
    struct Files;
    std::unique_ptr<Files> m_files;
    ErrorSink* m_sink;
    std::unique_ptr<SqliteImage> m_image;
    int m_depth = 0;
    bool m_open = false; // the lock is held and the image is inside a transaction
    long long m_changesAtOpen = 0;
    std::optional<StoreError> m_failure; // the first failure of the current transaction
    QStringList m_reported;              // messages shown in the current transaction
    // Set while the file in memory was found damaged: it is read, never written.
    std::optional<StoreError> m_damage;
    // Set once copies are kept: the time of a copy, and the day the last one was made.
    std::function<QDateTime()> m_copyClock;
    QDate m_dayCopied;
    std::uint64_t m_generation = 0;
    std::uint64_t m_readings = 0;
    bool m_copiedInTransaction = false; // an action's copy was made (or declined) in this transaction
    // The day's copy while it is still being written beside the program.
    std::future<void> m_pendingCopy;
};

} // namespace store
