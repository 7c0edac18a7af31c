#pragma once

#include "store/FileWriter.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <QDate>
#include <QString>

namespace store {
class QuerySource;
class StoreError;
} // namespace store

namespace service {

// The one backup generation, velmora_backup.mdb beside the data file, and
// putting it back. Neither ever loses data: the backup is written to a
// temporary file and renamed into place, and a restore checks the backup
// before it replaces the data file in one rename.
class Backup
{
public:
    // Tests hand in a `writer` that makes writes fail.
    explicit Backup(store::Store& store, store::FileWriter writer = store::atomicWriter());

    QString backupPath() const;

    // Records `today` as the date of the last backup in the data file, then
    // copies the file to the backup; done with `today`. When the copy fails,
    // the recorded date goes back to what it was and the old backup stays as
    // it was. A data file that does not decode is never copied over a backup.
    store::Result<QDate> make(QDate today);
    // Puts the backup in place of the data file, if the store judges it a
    // sound data file, as it judges the data file, and the money figures the
    // main window would show of it on `today` fit the Currency range;
    // otherwise changes nothing. Done with the date the backup carries
    // (invalid when it has none).
    store::Result<QDate> restore(QDate today);
    // The same for an automatic copy `copy` (see store::Copies).
    store::Result<QDate> restoreCopy(const QString& copy, QDate today);
    // The date of the last backup recorded in the data file; invalid when
    // there is none (after a clearing) or the file could not be read.
    QDate lastBackupDate();

private:
    store::Outcome copyToBackup();
    store::Outcome checkMoney(const QString& path, store::QuerySource& contents, QDate today) const;
    QString refusal(const QString& path, const store::StoreError& error) const;
    void restoreRecordedDate(const QVariant& previous);

    store::Store& m_store;
    store::FileWriter m_writer;
};

} // namespace service
