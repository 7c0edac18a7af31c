#include "Copies.h"

#include "AtomicFile.h"
#include "CheckedFile.h"
#include "CopyRotation.h"
#include "FailureCause.h"
#include "FileError.h"
#include "MoneyFigures.h"
#include "RegularFile.h"
#include "Schema.h"
#include "Store.h"
#include "StoreError.h"
#include "StoreTexts.h"
#include "WholeFile.h"

#include <QDebug>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <map>
#include <system_error>

namespace store {

namespace fs = std::filesystem;

namespace {

const char* whyText(CopyReason reason)
{
    switch (reason) {
    case CopyReason::DayStart:
        return texts::copyDayStart;
    case CopyReason::Clearing:
        return texts::copyClearing;
    case CopyReason::Restore:
        return texts::copyRestore;
    case CopyReason::OperationDeletion:
        return texts::copyOperationDeletion;
    case CopyReason::ExpenseMove:
        return texts::copyExpenseMove;
    case CopyReason::PurseDeletion:
        return texts::copyPurseDeletion;
    case CopyReason::AccountDeletion:
        return texts::copyAccountDeletion;
    case CopyReason::Correction:
        return texts::copyCorrection;
    case CopyReason::TrashReturn:
        return texts::copyTrashReturn;
    }
    return texts::copyDayStart;
}

QString shown(const fs::path& path)
{
    return QString::fromStdString(path.string());
}

StoreError notWritten(const fs::path& copy, const QString& cause)
{
    return StoreError(StoreError::Kind::CannotWrite,
                      QString::fromUtf8(texts::copyNotWritten).arg(shown(copy), cause), cause);
}

// A file of the folder whose name is a copy's name.
struct Found
{
    fs::path path;
    QDateTime made;
    QString why;
    int number = 1;
    std::int64_t size = 0;
};

std::optional<Found> parse(const fs::directory_entry& entry)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^velmora-(\d{4}-\d{2}-\d{2}-\d{4})-(\D+?)(?:-(\d+))?\.mdb$)"));
    const QRegularExpressionMatch match =
        pattern.match(QString::fromStdString(entry.path().filename().string()));
    std::error_code error;
    if (!match.hasMatch() || !entry.is_regular_file(error))
        return std::nullopt;
    Found found{entry.path(), QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd-HHmm")),
                match.captured(2).replace(QLatin1Char('-'), QLatin1Char(' ')),
                match.captured(3).isEmpty() ? 1 : match.captured(3).toInt(), 0};
    const auto size = entry.file_size(error);
    found.size = error ? 0 : static_cast<std::int64_t>(size);
    if (!found.made.isValid())
        return std::nullopt;
    return found;
}

// The copies in `folder`, newest first; none when it cannot be read.
std::vector<Found> scan(const fs::path& folder)
{
    std::vector<Found> copies;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (auto found = parse(entry))
            copies.push_back(std::move(*found));
    std::ranges::sort(copies, [](const Found& a, const Found& b) {
        return a.made != b.made ? a.made > b.made : a.number > b.number;
    });
    return copies;
}

// Removes the copies the rotation rule lets go, and what writes of copies
// left behind when their process died.
void thinOut(const fs::path& folder, const QDateTime& now)
{
    std::error_code error;
    std::vector<fs::path> orphans;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (isOrphanedTemporaryFile(entry.path()))
            orphans.push_back(entry.path());
    for (const fs::path& orphan : orphans)
        fs::remove(orphan, error);
    std::vector<CopyFile> files;
    for (Found& found : scan(folder))
        files.push_back({std::move(found.path), found.made, found.size});
    for (const fs::path& path : copiesToRemove(std::move(files), now, Copies::kSizeLimit)) {
        std::error_code ignored; // a copy that stays for now goes at the next round
        fs::remove(path, ignored);
    }
}

// Room left free on the disk beside the day's copy.
constexpr std::uintmax_t kRoomToSpare = 1 << 20;

// What reading a copy found; a copy is read again only when its size or
// time changed, so the list opens at once after the first time.
struct Judged
{
    CopyStamp stamp;
    QString damage;
    WideAmount bank;
    long long operations = 0;
};

// Listing copies and keeping what was found happen on the window's thread only.
std::map<fs::path, Judged>& judgedCopies()
{
    static std::map<fs::path, Judged> judged;
    return judged;
}

} // namespace

Copies::Copies(Store& store) : m_store(store) {}

fs::path Copies::folder() const
{
    return fs::path(m_store.dataFilePath().toStdString()).parent_path() / kCopiesFolderName;
}

QString Copies::fileName(const QDateTime& made, CopyReason reason, int number)
{
    QString why = QString::fromUtf8(whyText(reason)).replace(QLatin1Char(' '), QLatin1Char('-'));
    if (number > 1)
        why += QStringLiteral("-%1").arg(number);
    return QStringLiteral("velmora-%1-%2.mdb").arg(made.toString(QStringLiteral("yyyy-MM-dd-HHmm")), why);
}

bool Copies::before(CopyReason reason)
{
    // Nothing is written after a failure, so nothing needs keeping; and one
    // copy covers all the steps of one transaction, which start from one file.
    if (!m_store.m_copyClock || m_store.hasFailed() || m_store.m_copiedInTransaction)
        return true;
    const QDateTime now = m_store.m_copyClock();
    try {
        write(reason, now);
    } catch (const StoreError& e) {
        if (!m_store.goOnWithoutCopy(e))
            return false;
        // Going on without a copy also stands for the day's copy: asked once.
        m_store.m_dayCopied = now.date();
    }
    m_store.m_copiedInTransaction = true;
    return true;
}

std::optional<StoreError> Copies::beforeFirstChangeOfDay(std::optional<PlannedCopy>& planned)
{
    if (!m_store.m_copyClock)
        return std::nullopt;
    const QDateTime now = m_store.m_copyClock();
    if (m_store.m_dayCopied == now.date())
        return std::nullopt;
    const std::vector<Found> copies = scan(folder());
    if (!copies.empty() && copies.front().made.date() >= now.date()) {
        m_store.m_dayCopied = now.date();
        return std::nullopt;
    }
    try {
        if (m_store.keptBytes().empty())
            write(CopyReason::DayStart, now);
        else
            planned = plan(now);
    } catch (const StoreError& e) {
        if (!m_store.goOnWithoutCopy(e))
            return e;
        m_store.m_dayCopied = now.date();
    }
    return std::nullopt;
}

fs::path Copies::newCopyPath(CopyReason reason, const QDateTime& now) const
{
    std::error_code error;
    fs::create_directories(folder(), error);
    if (error)
        throw notWritten(folder(), StoreError::describeErrno(error.value()));
    fs::path copy;
    for (int number = 1; copy.empty() || fs::exists(copy, error); ++number)
        copy = folder() / fileName(now, reason, number).toStdString();
    return copy;
}

void Copies::write(CopyReason reason, const QDateTime& now)
{
    finishPending();
    std::span<const std::uint8_t> bytes = m_store.keptBytes();
    const bool held = !bytes.empty(); // the store holds the file on disk
    std::vector<std::uint8_t> read;
    if (!held) {
        try {
            read = readRegularFile(m_store.dataFilePath().toStdString()).bytes;
        } catch (const FileError& e) {
            if (e.errorNumber() == ENOENT)
                return; // no file, nothing to keep
            throw notWritten(folder(), describeFailure(e));
        }
        bytes = read;
    }
    const fs::path copy = newCopyPath(reason, now);
    try {
        if (!held || !m_store.linkDataFileAs(copy))
            m_store.writer()(copy, bytes, {});
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        throw notWritten(copy, describeFailure(e));
    }
    m_store.m_dayCopied = now.date();
    thinOut(folder(), now);
}

PlannedCopy Copies::plan(const QDateTime& now) const
{
    finishPending();
    const fs::path copy = newCopyPath(CopyReason::DayStart, now);
    std::error_code error;
    const fs::space_info room = fs::space(folder(), error);
    if (!error && room.available < m_store.keptBytes().size() + kRoomToSpare)
        throw notWritten(copy, StoreError::describeErrno(ENOSPC));
    return {copy, now};
}

void Copies::writeLater(const PlannedCopy& planned, std::vector<std::uint8_t> bytes)
{
    finishPending();
    m_store.m_dayCopied = planned.made.date();
    m_store.m_pendingCopy = std::async(
        std::launch::async, [writer = m_store.writer(), planned, folder = folder(), kept = std::move(bytes)] {
            try {
                writer(planned.path, kept, {});
            } catch (const std::exception& e) {
                // Too late to ask: the change it guards is made. Said in the log.
                qWarning().noquote() << QString::fromUtf8(texts::copyNotWritten)
                                            .arg(shown(planned.path), QString::fromUtf8(e.what()));
                return;
            }
            thinOut(folder, planned.made);
        });
}

void Copies::finishPending() const
{
    if (m_store.m_pendingCopy.valid())
        m_store.m_pendingCopy.get();
}

std::vector<CopyEntry> Copies::list() const
{
    std::vector<CopyEntry> copies = listed();
    for (CopyEntry& copy : copies) {
        if (!copy.judged) {
            copy = judged(std::move(copy));
            remember(copy);
        }
    }
    return copies;
}

std::vector<CopyEntry> Copies::listed() const
{
    finishPending();
    std::vector<CopyEntry> copies;
    std::map<fs::path, Judged> known;
    for (Found& found : scan(folder())) {
        CopyEntry copy{std::move(found.path), found.made, found.why, false, {}, {}, 0, std::nullopt};
        std::error_code error;
        const fs::file_time_type written = fs::last_write_time(copy.path, error);
        if (!error)
            copy.stamp = CopyStamp{found.size, written};
        const auto before = judgedCopies().find(copy.path);
        if (copy.stamp && before != judgedCopies().end() && before->second.stamp == *copy.stamp) {
            copy.judged = true;
            copy.damage = before->second.damage;
            copy.bank = before->second.bank;
            copy.operations = before->second.operations;
            known.insert(*before);
        }
        copies.push_back(std::move(copy));
    }
    judgedCopies() = std::move(known); // copies gone from the folder are forgotten
    return copies;
}

CopyEntry Copies::judged(CopyEntry copy)
{
    try {
        // The operations are checked and counted, not loaded: that would be
        // nine tenths of the work, and the bank's figure does not read them.
        CheckedFile file = WholeFile::check(copy.path, {u"Bank", u"Bills"});
        copy.bank = MoneyFigures::read(file.contents()).bank;
        copy.operations = static_cast<long long>(file.countedRows());
    } catch (const StoreError& e) {
        copy.damage = e.cause().isEmpty() ? e.message() : e.cause();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        copy.damage = describeFailure(e);
    }
    copy.judged = true;
    return copy;
}

void Copies::remember(const CopyEntry& copy)
{
    if (copy.judged && copy.stamp)
        judgedCopies()[copy.path] = {*copy.stamp, copy.damage, copy.bank, copy.operations};
}

} // namespace store
