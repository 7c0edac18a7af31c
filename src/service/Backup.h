#pragma once

#include "jet/Database.h"
#include "store/FileWriter.h"
#include "store/Store.h"

#include <QDate>
#include <QString>

#include <optional>

namespace service {

// The one backup generation, velmora_backup.mdb beside the data file, and
// putting it back. Neither ever loses data: the backup is written to a
// temporary file and renamed into place, and a restore checks the backup
// before it replaces the data file in one rename.
class Backup
{
public:
    struct Outcome
    {
        bool done = false;
        // For a failure: what to tell the user; empty when the store has
        // already shown the failure.
        QString message;
        // The date the backup carries; invalid when it has none.
        QDate date;
    };

    // Tests hand in a `writer` that makes writes fail.
    explicit Backup(store::Store& store, store::FileWriter writer = store::atomicWriter());

    QString backupPath() const;

    // Records `today` as the date of the last backup in the data file, then
    // copies the file to the backup. When the copy fails, the recorded date
    // goes back to what it was and the old backup stays as it was. A data
    // file that does not decode is never copied over a backup.
    Outcome make(QDate today);
    // Puts the backup in place of the data file, if it is a Velmora data
    // file with the data file's password and all its tables, and the money
    // figures the main window would show of it on `today` fit the Currency
    // range; otherwise changes nothing. The outcome's date is the one the
    // backup carries.
    Outcome restore(QDate today);
    // The date of the last backup recorded in the data file; invalid when
    // there is none (after a clearing) or the file could not be read.
    QDate lastBackupDate();

private:
    Outcome copyToBackup();
    std::optional<Outcome> moneyProblem(jet::Database contents, QDate today) const;
    void restoreRecordedDate(const QVariant& previous);

    store::Store& m_store;
    store::FileWriter m_writer;
};

} // namespace service
