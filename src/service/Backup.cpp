#include "Backup.h"

#include "DataFileCheck.h"
#include "ServiceTexts.h"
#include "ledger/MoneyFigures.h"
#include "store/Dates.h"
#include "store/FailureCause.h"
#include "store/FileError.h"
#include "store/RegularFile.h"
#include "store/Schema.h"
#include "store/Snapshot.h"
#include "store/Transaction.h"
#include "store/WholeFile.h"

#include <cerrno>

namespace service {

namespace fs = std::filesystem;
using store::StoreError;

namespace {

Backup::Outcome failure(const QString& message)
{
    return Backup::Outcome{false, message, {}};
}

const QString kBackupCriteria = QStringLiteral("F0 = 'BACKUP'");

} // namespace

Backup::Backup(store::Store& store, store::FileWriter writer) : m_store(store), m_writer(std::move(writer)) {}

QString Backup::backupPath() const
{
    const fs::path data(m_store.dataFilePath().toStdString());
    return QString::fromStdString((data.parent_path() / store::kBackupFileName).string());
}

Backup::Outcome Backup::make(QDate today)
{
    store::Transaction tx(m_store);
    const QVariant previous =
        tx.lookupValue(QStringLiteral("Tech"), QStringLiteral("F3"), kBackupCriteria, {}, 3);
    tx.execute(QStringLiteral("UPDATE Tech SET F3 = ? WHERE F0 = 'BACKUP'"), {today});
    if (!tx.commit())
        return failure({});
    Outcome outcome = copyToBackup();
    if (outcome.done)
        outcome.date = today;
    else
        restoreRecordedDate(previous);
    return outcome;
}

Backup::Outcome Backup::copyToBackup()
{
    std::vector<std::uint8_t> bytes;
    try {
        bytes = store::WholeFile(m_store).read();
    } catch (const StoreError& e) {
        return failure(e.message());
    }
    if (const auto problem = dataFileProblem(bytes))
        return failure(
            StoreError::forFile(StoreError::Kind::Damaged, m_store.dataFilePath(), *problem).message());
    try {
        m_writer(backupPath().toStdString(), bytes);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        return failure(
            QString::fromUtf8(texts::backupNotWritten).arg(backupPath(), store::describeFailure(e)));
    }
    return Outcome{true, {}, {}};
}

void Backup::restoreRecordedDate(const QVariant& previous)
{
    store::Transaction tx(m_store);
    tx.execute(QStringLiteral("UPDATE Tech SET F3 = ? WHERE F0 = 'BACKUP'"), {previous});
    tx.commit();
}

// A backup whose money the main window could not show in the Currency range
// is not put in place.
std::optional<Backup::Outcome> Backup::moneyProblem(jet::Database contents, QDate today) const
{
    try {
        store::Snapshot backup(std::move(contents));
        const auto figures = ledger::MoneyFigures::read(backup, ledger::MonthStatistics::shownMonths(today));
        if (!figures.keepsInRange({}))
            return failure(QString::fromUtf8(texts::amountOutOfRange));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& e) {
        return failure(
            QString::fromUtf8(texts::backupDamaged).arg(backupPath(), QString::fromUtf8(e.what())));
    }
    return std::nullopt;
}

Backup::Outcome Backup::restore(QDate today)
{
    std::vector<std::uint8_t> bytes;
    try {
        bytes = store::readRegularFile(backupPath().toStdString()).bytes;
    } catch (const store::FileError& e) {
        if (e.cause() == store::FileError::Cause::System && e.errorNumber() == ENOENT)
            return failure(QString::fromUtf8(texts::backupMissing).arg(backupPath()));
        return failure(QString::fromUtf8(texts::backupDamaged).arg(backupPath(), store::describeFailure(e)));
    }
    jet::Database contents;
    if (const auto problem = dataFileProblem(bytes, &contents))
        return failure(QString::fromUtf8(texts::backupDamaged).arg(backupPath(), *problem));
    if (auto refused = moneyProblem(std::move(contents), today))
        return *refused;
    try {
        store::WholeFile(m_store, m_writer).replace(bytes);
    } catch (const StoreError& e) {
        return failure(e.message());
    }
    return Outcome{true, {}, lastBackupDate()};
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
