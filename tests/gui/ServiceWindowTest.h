#pragma once

#include <QObject>

// The service window: opening, its controls, the expense accounts, the
// password and the currency rates.
class ServiceWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void opensFromTheMainWindowWithEveryControl();
    void lastBackupDateIsShownOnlyWhenThereIsOne();
    void newCodesFollowEveryCodeInUse();
    void anAccountWithExpensesIsDeletedOnlyOnceTheyAreMoved();
    void accountChangesKeepTheOtherWindowsWork();
    void accountButtonsWithNothingChosen();
    void passwordIsSetKeptOrRemovedAndHonouredAtTheNextSignIn();
    void ratesAreCheckedRoundedAndShownBack_data();
    void ratesAreCheckedRoundedAndShownBack();
};
