#pragma once

#include <QObject>

// The service window's whole-file operations and its changes of money:
// backup, restore, clearing, deleting and moving operations, with what the
// main window and the data file show afterwards.
class ServiceOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void backupThenRestoreBringsBackTheBackupAndEndsTheProgram();
    void restoreRefusesAMissingOrForeignBackup_data();
    void restoreRefusesAMissingOrForeignBackup();
    void questionsAnsweredNoChangeNothing();
    void clearingEmptiesTheMainWindow();
    void deletingABankOperationRaisesOrLowersTheBalance();
    void deletingAnExpenseGivesTheMoneyBack();
    void deletingRefusesWhatIsNotAnOperation();
    void movingExpensesBetweenAccounts();
};
