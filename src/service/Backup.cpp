#include "Backup.h"

#include "ServiceTexts.h"
#include "store/Copies.h"
#include "store/Dates.h"
#include "store/FailureCause.h"
#include "store/MoneyFigures.h"
#include "store/Schema.h"
#include "store/Transaction.h"
#include "store/WholeFile.h"

#include <optional>

namespace service {

namespace fs = std::filesystem;
using store::Outcome;
using store::StoreError;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

const QString kBackupCriteria = QStringLiteral("F0 = 'BACKUP'");

} // namespace

Backup::Backup(store::Store& store, store::FileWriter writer) : m_store(store), m_writer(std::move(writer)) {}

QString Backup::backupPath() const
{
    const fs::path data(m_store.dataFilePath().toStdString());
    return QString::fromStdString((data.parent_path() / store::kBackupFileName).string());
}

store::Result<QDate> Backup::make(QDate today)
{
    store::Transaction tx(m_store);
    const QVariant previous =
        tx.lookupValue(QStringLiteral("Tech"), QStringLiteral("F3"), kBackupCriteria, {}, 3);
    tx.execute(QStringLiteral("UPDATE Tech SET F3 = ? WHERE F0 = 'BACKUP'"), {today});
    if (!tx.commit())
        return Outcome::notSaved();
    Outcome copied = copyToBackup();
    if (!copied) {
        restoreRecordedDate(previous);
        return copied;
    }
    return today;
}

Outcome Backup::copyToBackup()
{
    try {
        store::WholeFile(m_store, m_writer).copyTo(backupPath().toStdString());
    } catch (const StoreError& e) {
        // Only the copy is written: CannotWrite is the backup's, everything else the data file's.
        if (e.kind() == StoreError::Kind::CannotWrite)
            return Outcome::refused(text(texts::backupNotWritten).arg(backupPath(), e.cause()));
        return Outcome::refused(e.message());
    }
    return Outcome::done();
}

void Backup::restoreRecordedDate(const QVariant& previous)
{
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("UPDATE Tech SET F3 = ? WHERE F0 = 'BACKUP'"), {previous});
    tx.commit();
}

// A backup whose money the main window could not show in the Currency range
// is not put in place.
Outcome Backup::checkMoney(const QString& path, store::QuerySource& contents, QDate today) const
{
    try {
        const auto figures = store::MoneyFigures::read(contents, store::MoneyFigures::shownMonths(today));
        if (!figures.keepsInRange({}))
            return Outcome::refused(text(texts::amountOutOfRange));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        return Outcome::refused(text(texts::backupDamaged).arg(path, store::describeFailure(e)));
    }
    return Outcome::done();
}

QString Backup::refusal(const QString& path, const StoreError& error) const
{
    if (error.kind() == StoreError::Kind::Missing)
        return text(texts::backupMissing).arg(path);
    return text(texts::backupDamaged).arg(path, error.cause());
}

store::Result<QDate> Backup::restore(QDate today)
{
    return restoreCopy(backupPath(), today);
}

// The data file as it stands is copied first, so the restore can be undone.
store::Result<QDate> Backup::restoreCopy(const QString& copy, QDate today)
{
    std::optional<store::CheckedFile> backup;
    try {
        backup.emplace(store::WholeFile(m_store, m_writer).checkToReplace(copy.toStdString()));
    } catch (const StoreError& e) {
        return Outcome::refused(refusal(copy, e));
    }
    if (Outcome money = checkMoney(copy, backup->contents(), today); !money)
        return money;
    if (!store::Copies(m_store).before(store::CopyReason::Restore))
        return Outcome::notSaved();
    try {
        store::WholeFile(m_store, m_writer).replaceWith(std::move(*backup));
    } catch (const StoreError& e) {
        return Outcome::refused(e.message());
    }
    return lastBackupDate();
}

QDate Backup::lastBackupDate()
{
    store::Transaction tx(m_store);
    const QVariant value =
        tx.lookupValue(QStringLiteral("Tech"), QStringLiteral("F3"), kBackupCriteria, {}, 3);
    tx.commit();
    return value.isValid() ? store::dateFromStored(value.toString()) : QDate();
}

} // namespace service
