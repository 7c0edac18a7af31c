#pragma once

#include "WideAmount.h"

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace store {

class Store;
class StoreError;

// Why an automatic copy was made; its file name says it.
enum class CopyReason
{
    DayStart,
    Clearing,
    Restore,
    OperationDeletion,
    ExpenseMove,
    PurseDeletion,
    AccountDeletion,
    Correction,
    TrashReturn,
};

// A copy's size and time when it was listed: what it held then was judged,
// and stands while they are the same.
struct CopyStamp
{
    std::int64_t size = 0;
    std::filesystem::file_time_type written;
    bool operator==(const CopyStamp&) const = default;
};

// One automatic copy as the list of copies shows it.
struct CopyEntry
{
    std::filesystem::path path;
    QDateTime made;
    QString why;
    // False until the copy is read and judged; damage, bank and operations
    // are known only then.
    bool judged = false;
    // Empty when the copy reads as a sound data file; else what is wrong with it.
    QString damage;
    WideAmount bank;
    long long operations = 0;
    std::optional<CopyStamp> stamp; // none when its time could not be read
};

// The day's copy, its name and time chosen before the save that it guards.
struct PlannedCopy
{
    std::filesystem::path path;
    QDateTime made;
};

// The automatic copies of the data file in velmora_backups/ beside it: the
// file as it was before the first change of each day and just before every
// action that changes it for good. Each is written from the bytes the store
// already holds, atomically, then the folder is thinned out (copiesToRemove).
// The one manual backup, velmora_backup.mdb, lies outside the folder and is
// never touched. Nothing happens until the store was told to keep copies.
class Copies
{
public:
    // All copies together are kept below this size.
    static constexpr std::int64_t kSizeLimit = 200LL * 1024 * 1024;

    explicit Copies(Store& store);

    std::filesystem::path folder() const;

    // Keeps a copy of the data file as it stands before an action that
    // changes it for good; inside the action's transaction, before it
    // writes. True when the copy is made, or there is nothing to copy, or the
    // user agreed to go on without one (asked through the store's sink);
    // false when the action must stop.
    bool before(CopyReason reason);
    // The first save of a day keeps the file as it was, unless a copy of
    // this day exists already. When the store holds the file's bytes, the
    // folder, name and room are checked now and the copy is left in `planned`
    // for writeLater(); otherwise the file is copied at once. The error when
    // the copy failed and the user chose not to go on.
    std::optional<StoreError> beforeFirstChangeOfDay(std::optional<PlannedCopy>& planned);
    // Writes the planned copy of `bytes`, the file the save replaced, and
    // thins out the folder, beside the program.
    void writeLater(const PlannedCopy& planned, std::vector<std::uint8_t> bytes);

    // The copies in the folder, newest first, each read and judged as a
    // restore judges a file.
    std::vector<CopyEntry> list() const;
    // The copies in the folder, newest first, at once: those judged before
    // and unchanged since with what was found, the others not yet judged.
    std::vector<CopyEntry> listed() const;
    // The copy read and judged as a restore judges a file. Touches no store,
    // so it may run on any thread.
    static CopyEntry judged(CopyEntry copy);
    // Keeps what judging the copy found for the next listing; on the
    // window's thread.
    static void remember(const CopyEntry& copy);

    // Waits until the day's copy, written beside the program, is in place.
    void finishPending() const;

    // "velmora-2026-11-22-0930-перед-очисткой.mdb"; `number` above 1 is
    // added for a second copy of the same minute.
    static QString fileName(const QDateTime& made, CopyReason reason, int number = 1);

private:
    // Throws StoreError (CannotWrite naming the copy) when it cannot be written.
    void write(CopyReason reason, const QDateTime& now);
    // The day's copy planned: the folder made, the name chosen and the room
    // for the bytes the store holds checked, so that a failure is asked about
    // before the change. Throws as write().
    PlannedCopy plan(const QDateTime& now) const;
    // The folder made and the name of a new copy chosen; throws as write().
    std::filesystem::path newCopyPath(CopyReason reason, const QDateTime& now) const;

    Store& m_store;
};

} // namespace store
