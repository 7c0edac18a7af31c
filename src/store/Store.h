#pragma once

#include "Amount.h"
#include "DataFile.h"
#include "ErrorSink.h"
#include "FileLock.h"
#include "FileSaver.h"
#include "Row.h"
#include "StoreResult.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <memory>
#include <optional>

namespace store {

class SqliteImage;

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

    QString dataFilePath() const { return m_file.displayPath(); }
    void setErrorSink(ErrorSink* sink) { m_sink = sink; }

    // Opens the data file and closes it again, throwing the StoreError that
    // explains why it cannot be used or changed (a damaged file).
    void verify();

    // Each call runs in the transaction the caller holds open, or else in a
    // transaction of its own (which saves at once). See Transaction.
    QVariant lookupValue(const QString& table, const QString& column, const QString& criteria,
                         const QVariantList& params = {}, std::optional<int> index = std::nullopt);
    bool executeStatement(const QString& sql, const QVariantList& params = {});
    Rows query(const QString& sql, const QVariantList& params = {});
    // Every row of a table, in file order.
    Rows rows(const QString& table);

private:
    friend class Transaction;

    void enter();
    StoreResult leave(bool commit, long long changesAtEnter);
    bool isOpen() const { return m_open; }
    bool hasFailed() const { return m_failure.has_value(); }
    long long changeCount() const;
    // Both return true when the file was read anew.
    bool open();
    bool refresh();
    StoreResult finish(bool commit);
    void save();
    void fail(const StoreError& error, bool show = true);
    void report(const StoreError& error);

    bool runStatement(const QString& sql, const QVariantList& params);
    Rows runQuery(const QString& sql, const QVariantList& params);
    void reportEngineError(int number, const QString& description);

    DataFile m_file;
    FileLock m_lock;
    ErrorSink* m_sink;
    FileWriter m_writer;
    std::unique_ptr<SqliteImage> m_image;
    std::optional<FileSignature> m_signature; // of the file m_image was read from or saved to
    int m_depth = 0;
    bool m_open = false; // the lock is held and the image is inside a transaction
    long long m_changesAtOpen = 0;
    std::optional<StoreError> m_failure; // the first failure of the current transaction
    QStringList m_reported;              // messages shown in the current transaction
    // Set while the file in memory was found damaged: it is read, never written.
    std::optional<StoreError> m_damage;
};

} // namespace store
